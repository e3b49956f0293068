#pragma once

#include <qor/Console.h>
#include <qor/XMLElement.h>

/// Prints a document, an element a line, down to a depth and up to a number of lines, and how much
/// was left out.
void printTree(qor::Console& console, const qor::XMLElement& root, int depth, int lineCount);
