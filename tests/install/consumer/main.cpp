#include <qor/qor.h>

int main()
{
    qor::XMLElement document("");
    return document.parse("<answer>42</answer>") < 0 || document.getValueAsInteger() != 42 ? 1 : 0;
}
