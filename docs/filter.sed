# SPDX-License-Identifier: MIT
# Turns pages that read well in a repository viewer into pages for Doxygen.
# Titles: "# Title <!-- name -->".
s/^# \(.*\) <!-- mainpage -->$/# \1 {#mainpage}/
s/^# \(.*\) <!-- \([a-z-]*\) -->$/# \1 {#\2}\n\n\\tableofcontents/
# The main page's table lists the pages, which makes them its children.
s/^| \[\([^]]*\)\](\([a-z-]*\)\.md) |/| \\subpage \2 "\1" |/
s/\[\([^]]*\)\](\([a-z-]*\)\.md)/\\ref \2 "\1"/g
s/!\[\([^]]*\)\](images\/\([a-z-]*\)\.svg)/\\dotfile \2.dot "\1"/
s/!\[\([^]]*\)\](images\/\([a-z-]*\.png\))/\\image html \2 "\1"/
s/^<!-- embed .* -->$//
# A phrase, not a link to the class.
s/\*\*Thread safety\*\*/**%Thread safety**/
