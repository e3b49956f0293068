#pragma once

#include <qor/Console.h>
#include <qor/Image.h>

/// Prints an image, two of its rows a line, scaled down by a whole number until neither side is
/// longer than a number of columns. Alpha does not show.
/// @param usesColours whether the lines are half blocks with escape sequences for 24-bit colours;
///        else their characters stand for the brightness
void printPicture(qor::Console& console, const qor::Image& image, int columns, bool usesColours);
