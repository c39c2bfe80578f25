#pragma once

/// Marks what the shared library shows to its users; all else is hidden.
#define LANECFG_EXPORT __attribute__((visibility("default")))
