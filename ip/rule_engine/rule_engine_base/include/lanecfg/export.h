#pragma once

/// Marks what the shared library shows to its users; all else is hidden.
#define LANECFG_EXPORT __attribute__((visibility("default")))

/// Keeps a class inside a shown one to the library.
#define LANECFG_LOCAL __attribute__((visibility("hidden")))
