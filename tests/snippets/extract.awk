# Turns the code blocks of a header (@code) or a page (```cpp) into a source file with a function for each. A
# block with a main function becomes that function under another name. Included programs are compiled as such.
function finish() {
    open = 0
    if (skipped) {
        return
    }
    ++count
    if (body ~ /int main\(/) {
        sub(/int main\(/, "int main" count "(", body)
        code = code body "\n"
    } else {
        code = code "void snippet" count "()\n{\n" body "}\n\n"
    }
}
/^ *(\/\/\/|\*) *@code/ || /^ *```cpp$/ {
    open = 1
    skipped = embedded
    body = ""
    next
}
open && (/@endcode/ || /^ *```$/) { finish(); next }
open {
    sub(/^ *\/\/\/ ?/, "")
    if ($0 ~ /^ *#include/) {
        includes = includes $0 "\n"
    } else {
        body = body $0 "\n"
    }
}
{ embedded = /<!-- embed/ }
END { printf "#include <iostream>\n#include <qor/qor.h>\n%s\n%s", includes, code }
