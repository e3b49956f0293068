#pragma once

/// Returns a number that grows with the files that this process has open.
int countHandles();
