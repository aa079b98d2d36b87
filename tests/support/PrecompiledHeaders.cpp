// The translation unit that the tests' precompiled headers belong to; it holds no code.
