#pragma once

/// @file
/// All public classes of the library.

#include "qor/Console.h"
#include "qor/ConsoleCommand.h"
#include "qor/Math.h"
#include "qor/StringUtil.h"
#include "qor/XMLElement.h"
