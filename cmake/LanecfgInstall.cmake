# Install rules: libraries, headers, CMake package, pkg-config file.
