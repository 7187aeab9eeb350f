// The patient panel: the host writes the patient into the panel's fields, and
// PatientLoaded applies the display rules. The panel is the only record of the
// patient: txtPatEID says whether one is selected.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

namespace {

constexpr std::int32_t kBlack = 0;

// An inactive insurance is not coloured: its name goes, and the tool tip says why.
void showInsurance(TextField& field, const std::string& activeFlag, const char* which) {
    if (activeFlag == "Y") {
        field.foreColor = kBlack;
        field.toolTipText = std::string(which) + " insurance is active";
    } else {
        field.text.clear();
        field.toolTipText = std::string(which) + " insurance is not active";
    }
}

} // namespace

void ctlScheduler::PatientLoaded() {
    ShowInsuranceState();
    ShowPatientNotice();
    ShowPhotoState();
}

void ctlScheduler::ShowInsuranceState() {
    showInsurance(w_.txtPatPriIns, state_.strPatPrimaryActive, "Primary");
    showInsurance(w_.txtPatSecIns, state_.strPatSecondaryActive, "Secondary");
}

// Waits for the user and changes nothing; an unchanged date is told each time.
void ctlScheduler::ShowPatientNotice() {
    if (state_.strPatDOD.empty()) return;
    platform_.msgBox(w_.txtPatName.text + " has an RHC date of " + state_.strPatDOD);
}

// Only "0" and the empty text mean no photo. A user who looks at photos keeps
// seeing them as long as each patient has one.
void ctlScheduler::ShowPhotoState() {
    const std::string& imageId = state_.strPhotoImageId;
    if (imageId == "0" || imageId.empty()) {
        w_.cmdCalendar.visible = false;
        w_.cmdPatientPhoto.visible = false;
        state_.blnPhotoShown = false;
        host().HidePhoto();
        return;
    }
    w_.cmdCalendar.visible = true;
    w_.cmdPatientPhoto.visible = true;
    if (state_.blnPhotoShown) cmdPatientPhoto_Click();
}

void ctlScheduler::cmdPatientPhoto_Click() {
    state_.blnPhotoShown = true;
    const std::string used = state_.strPhotoServerUsed, path = state_.strPhotoServerPath;
    const std::string image = state_.strPhotoImageId, saveLoc = state_.strPhotoSaveLoc;
    host().DisplayPhoto(used, path, image, saveLoc);
}

void ctlScheduler::cmdCalendar_Click() {
    state_.blnPhotoShown = false;
    host().HidePhoto();
}

// Unlike the commands' tests, the identifier is not trimmed: blanks pass.
void ctlScheduler::RaiseQuickScan(std::int16_t intScanNumber) {
    if (w_.txtPatEID.text.empty()) {
        platform_.msgBox("Please select a patient.");
        return;
    }
    const std::string patient = w_.txtPatEID.text;
    host().DisplayQuickScan(patient, intScanNumber);
}

// Keeps the tool tips, the fore colours, the notice date, the flags, the photo
// values and whether the photo is on show.
void ctlScheduler::ClearPatient() {
    for (TextField* f : w_.patientFields())
        f->text.clear();
    w_.txtPatPriIns.backColor = TextField::kButtonFace;
    w_.txtPatSecIns.backColor = TextField::kButtonFace;
    ClearAdditionalAppInfo();
}

} // namespace quorvane
