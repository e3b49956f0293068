# SPDX-License-Identifier: MIT
# Turns the code blocks of a header (@code) or a page (```cpp) into a source file. A block of statements becomes
# a function; one that begins with a function definition is compiled as it is, in a namespace of its own.
# Embedded programs are left out: they are compiled as such.
function finish() {
    open = 0
    if (skipped) {
        return
    }
    ++count
    if (body ~ /^\n*[a-z:]+ [a-zA-Z]+\([^\n;]*\)\n{/) {
        code = code "namespace snippet" count "\n{\n" body "}\n\n"
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
    sub(/^   /, "")
    sub(/int main\(/, "int start(")
    if ($0 ~ /^ *#include/) {
        includes = includes $0 "\n"
    } else {
        body = body $0 "\n"
    }
}
{ embedded = /<!-- embed/ }
END { printf "#include <iostream>\n#include <qor/qor.h>\n%s\n%s", includes, code }
