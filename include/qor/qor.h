// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Includes all public headers.

/// @namespace qor
/// All classes and functions of the library.

#include "qor/CRC32.h"
#include "qor/Checksum.h"
#include "qor/Color.h"
#include "qor/Condition.h"
#include "qor/Configuration.h"
#include "qor/Console.h"
#include "qor/ConsoleCommand.h"
#include "qor/Desktop.h"
#include "qor/File.h"
#include "qor/Image.h"
#include "qor/Log.h"
#include "qor/MD5.h"
#include "qor/Math.h"
#include "qor/Matrix.h"
#include "qor/Mutex.h"
#include "qor/Rectangle.h"
#include "qor/State.h"
#include "qor/StateMachine.h"
#include "qor/StringUtil.h"
#include "qor/Task.h"
#include "qor/Thread.h"
#include "qor/Vector.h"
#include "qor/Version.h"
#include "qor/XMLChildren.h"
#include "qor/XMLElement.h"
