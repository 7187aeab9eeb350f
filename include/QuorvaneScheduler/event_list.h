#pragma once
// The control's 37 events, listed once, in the order of the interface. Each row
// is X(Name, (C++ parameters), (their names), (the interface's parameters by
// name: their type as a host by name sees it, and whether the control takes
// back what the host left there)). The event sink, the hearing by name, the
// event table and the recorder's tee are all expanded from this list; adding an
// event here adds it everywhere (the Qt signals, which moc must read, are
// checked against it by a test).
//
// S, I, D and V stand for String, Integer, Date and a Variant; R marks a
// by-reference parameter. Str is const std::string&.

// The list itself: X(Name, (C++ parameters), (names), (interface parameters)).
#define QUORVANE_EVENTS(X)                                                                                   \
    X(ValidatePatient, (Str strPatientEID), (strPatientEID), ({"strPatientEID", S}))                        \
    X(UpdateAppStatus, (Str strResourceEID, Variant & strStatus), (strResourceEID, strStatus),              \
      ({"strResourceEID", S}, {"strStatus", V, R}))                                                          \
    X(SaveAdditionalAppInfo, (Str strResourceEID), (strResourceEID), ({"strResourceEID", S}))               \
    X(PrintDay, (Str ResourceEID, Str ScheduleInfo), (ResourceEID, ScheduleInfo),                           \
      ({"ResourceEID", S}, {"ScheduleInfo", S}))                                                             \
    X(PrintResourceSuperbills, (Str ResourceEID, Str strScheduleDate), (ResourceEID, strScheduleDate),      \
      ({"ResourceEID", S}, {"strScheduleDate", S}))                                                          \
    X(AddApptWithPatient, (Str strResourceNumber, Str strResourceEID), (strResourceNumber, strResourceEID), \
      ({"strResourceNumber", S}, {"strResourceEID", S}))                                                     \
    X(PatientSearch, (), (), ())                                                                             \
    X(AppointmentSearch, (Str strResourceNumber), (strResourceNumber), ({"strResourceNumber", S}))          \
    X(AddEditRecurrence, (Str strAppInfo, Str strResourceNumber), (strAppInfo, strResourceNumber),          \
      ({"strAppInfo", S}, {"strResourceNumber", S}))                                                         \
    X(OnWeekLoad, (Str strScheduledEID, OleDate strCurrentDate), (strScheduledEID, strCurrentDate),         \
      ({"strScheduledEID", S}, {"strCurrentDate", D}))                                                       \
    X(OpenPatient, (Str strPatientEID), (strPatientEID), ({"strPatientEID", S}))                            \
    X(OpenPatientHistory, (Str strPatientEID), (strPatientEID), ({"strPatientEID", S}))                     \
    X(AppointmentSelected, (Str strResourceNumber), (strResourceNumber), ({"strResourceNumber", S}))        \
    X(ResourceBeforeRemove, (Str strResourceValue, Str strResourceNumber), (strResourceValue, strResourceNumber), \
      ({"strResourceValue", S}, {"strResourceNumber", S}))                                                   \
    X(ResourceAfterResize, (Str strResourceValue, Str strResourceNumber), (strResourceValue, strResourceNumber), \
      ({"strResourceValue", S}, {"strResourceNumber", S}))                                                   \
    X(ResourceAfterDrag, (Str strResourceValue, Str strResourceNumber), (strResourceValue, strResourceNumber), \
      ({"strResourceValue", S}, {"strResourceNumber", S}))                                                   \
    X(ResourceOnClick, (std::int16_t intResourceNumber, Str strResourceValue, const Variant& strResourceDate), \
      (intResourceNumber, strResourceValue, strResourceDate),                                                \
      ({"intResourceNumber", I}, {"strResourceValue", S}, {"strResourceDate", V}))                           \
    X(NextAvailable, (Str strResourceEID, Str strResourceNumber), (strResourceEID, strResourceNumber),      \
      ({"strResourceEID", S}, {"strResourceNumber", S}))                                                     \
    X(RefreshAllSchedules, (), (), ())                                                                       \
    X(RefreshAllDisplayAll, (), (), ())                                                                      \
    X(RefreshSchedule, (Str strResourceNumber), (strResourceNumber), ({"strResourceNumber", S}))            \
    X(RefProviderSearch, (), (), ())                                                                         \
    X(PrintSuperbill, (Str strAppID, Str strPatientEID), (strAppID, strPatientEID),                         \
      ({"strAppID", S}, {"strPatientEID", S}))                                                               \
    X(PrintDaysFacesheets, (Str ResourceEID, Str strScheduleDate), (ResourceEID, strScheduleDate),          \
      ({"ResourceEID", S}, {"strScheduleDate", S}))                                                          \
    X(PrintFaceSheet, (Str strAppID, Str strPatientEID), (strAppID, strPatientEID),                         \
      ({"strAppID", S}, {"strPatientEID", S}))                                                               \
    X(DisplayPhoto, (Str strServerUsed, Str strServerPath, Str strImageId, Str strSaveLocation),            \
      (strServerUsed, strServerPath, strImageId, strSaveLocation),                                           \
      ({"strServerUsed", S}, {"strServerPath", S}, {"strImageId", S}, {"strSaveLocation", S}))               \
    X(HidePhoto, (), (), ())                                                                                 \
    X(DisplayQuickScan, (Str strPatientEID, std::int16_t intScanNumber), (strPatientEID, intScanNumber),    \
      ({"strPatientEID", S}, {"intScanNumber", I}))                                                          \
    X(QuickComments, (Str strText, Str strType), (strText, strType), ({"strText", S}, {"strType", S}))      \
    X(DisplayTasking, (), (), ())                                                                            \
    X(DisplayRecallSetup, (Str strPatientEID), (strPatientEID), ({"strPatientEID", S}))                     \
    X(DisplayRecallList, (), (), ())                                                                         \
    X(DisplayLegend, (), (), ())                                                                             \
    X(PrintTxPlan, (Str strAppID, Str strPatientEID, Str strScheduleDate), (strAppID, strPatientEID, strScheduleDate), \
      ({"strAppID", S}, {"strPatientEID", S}, {"strScheduleDate", S}))                                       \
    X(OpenQuickPay, (Str strAppID, Str strPatientEID), (strAppID, strPatientEID),                           \
      ({"strAppID", S}, {"strPatientEID", S}))                                                               \
    X(OpenAuthorization, (Str strAppID, Str strPatientEID), (strAppID, strPatientEID),                      \
      ({"strAppID", S}, {"strPatientEID", S}))                                                               \
    X(OpenOfficeCommunication, (Str strPatientEID), (strPatientEID), ({"strPatientEID", S}))

// A row's parenthesised list, without its parentheses; and the same after a
// comma, when it is not empty.
#define QUORVANE_UNWRAP(...) __VA_ARGS__
#define QUORVANE_COMMA_ARGS(...) __VA_OPT__(, ) __VA_ARGS__
