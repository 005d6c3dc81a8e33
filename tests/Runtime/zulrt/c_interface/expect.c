#include "expect.h"

#include <stdio.h>
#include <string.h>

int failures = 0;

void expect(int holds, char const* what)
{
    if (!holds) {
        printf("FAILED: %s\n", what);
        ++failures;
    }
}

void expectInt(long long got, long long wanted, char const* what)
{
    if (got != wanted) {
        printf("FAILED: %s is %lld instead of %lld\n", what, got, wanted);
        ++failures;
    }
}

void expectText(char const* got, char const* wanted, char const* what)
{
    if (got == NULL || strcmp(got, wanted) != 0) {
        printf("FAILED: %s is \"%s\" instead of \"%s\"\n", what, got == NULL ? "(null)" : got, wanted);
        ++failures;
    }
}

void expectNull(void const* got, char const* what)
{
    expect(got == NULL, what);
}
