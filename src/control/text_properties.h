#pragma once
// The string properties the control keeps, in the order of the interface:
// the text-field properties, each reaching the text field of its name with
// "txt" before it, and the field properties, each a field of the state record.

// clang-format off
#define QUORVANE_TEXT_PROPERTIES(X) X(PatEID) X(AppPatEID) X(AppStatus) X(AppComments) X(AppChiefComplaint) X(AppRefProvider) X(AppPriorAuthNum) X(AppRefProviderEID) X(PatName) X(PatHomePhone) X(PatHomePhoneExt) X(PatWorkPhone) X(PatWorkPhoneExt) X(PatOtherPhone) X(PatOtherPhoneExt) X(PatPriIns) X(PatSecIns) X(PatChartNumber) X(PatPCP) X(PatBalance30) X(PatBalance60) X(PatBalance90) X(PatBalance180) X(PatSex) X(PatDOB) X(PatPrimaryCoPay) X(PatSecondaryCoPay) X(AppStartDateTime) X(AppEndDateTime) X(AppDescription) X(AppAppointmentId) X(AppRecurrenceId) X(AppKey)
#define QUORVANE_FIELD_PROPERTIES(X) X(PatDOD, strPatDOD) X(PatPrimaryActive, strPatPrimaryActive) X(PatSecondaryActive, strPatSecondaryActive) X(PhotoServerUsed, strPhotoServerUsed) X(PhotoServerPath, strPhotoServerPath) X(PhotoImageId, strPhotoImageId) X(PhotoSaveLoc, strPhotoSaveLoc)
// clang-format on
