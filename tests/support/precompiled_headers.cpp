// A source for the target that owns the precompiled headers of all tests.
