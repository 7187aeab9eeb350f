#include <QuorvaneScheduler/ctl_scheduler.h>

int main() {
    quorvane::Platform platform;
    quorvane::ctlScheduler control(platform);
    return control.ResourceNumber() == "1" ? 0 : 1;
}
