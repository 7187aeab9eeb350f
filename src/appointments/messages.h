#pragma once
// The words the appointment commands show the user, each in one place.

namespace quorvane::messages {

inline constexpr const char* kNoAppointment = "No appointment has been selected";
inline constexpr const char* kSaveMismatch =
    "Unable to save because the selected appointment does not match the selected patient.";
inline constexpr const char* kNoPatient = "You must select a patient";
inline constexpr const char* kNoResource = "You must select a resource in order to schedule a patient";
inline constexpr const char* kNoSlot =
    "You must first select a start time block on the schedule before scheduling a patient.";
inline constexpr const char* kRemoveQuestion = "Are you sure you want to remove this appointment";
// "Error(" + column number + "-" + what + kLostIndexTail
inline constexpr const char* kLostIndexTail = "): this appointment has lost index";

} // namespace quorvane::messages
