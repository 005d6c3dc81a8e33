#pragma once

/// Sends what the library prints about bad containers to nowhere, from the first call on.
void keepOutputQuiet();

/// Ends the process when @p holds is false: a fuzzer then keeps the input.
void must(bool holds, char const* what);
