// SPDX-License-Identifier: MIT
#pragma once

#include <qor/Console.h>
#include <qor/XMLElement.h>

/// Prints a document with one element per line, and the number of omitted elements.
/// @param depth the number of levels
/// @param lineCount the maximum number of lines
void printTree(qor::Console& console, const qor::XMLElement& root, int depth, int lineCount);
