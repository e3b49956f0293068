#include <qor/qor.h>

int main()
{
    qor::Thread thread;
    if (!thread.start(nullptr)) {
        return 1;
    }
    thread.wait();
    qor::XMLElement document("");
    return document.parse("<answer>42</answer>") < 0 || document.getValueAsInteger() != 42 ? 1 : 0;
}
