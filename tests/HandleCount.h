// SPDX-License-Identifier: MIT
#pragma once

/// Returns a number that increases with each open file of this process.
int countHandles();
