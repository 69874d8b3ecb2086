// Prints to where no printer is: exits with 0 if the session does not open.
#include <TavioIpadSDK/TavioIpadSDK.h>

int main() {
    const bool isOpen = tavio::OpenSessionWiFi("127.0.0.1:1");
    tavio::PrintCut();
    tavio::CloseSessionWiFi();
    return isOpen ? 1 : 0;
}
