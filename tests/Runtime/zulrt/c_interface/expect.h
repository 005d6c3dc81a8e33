#ifndef EXPECT_H
#define EXPECT_H

/* What the program checks; each failure is printed and counted. */

extern int failures;

void expect(int holds, char const* what);
void expectInt(long long got, long long wanted, char const* what);
void expectText(char const* got, char const* wanted, char const* what);
void expectNull(void const* got, char const* what);

/* Asks every function about null handles. */
void askNull(void);

#endif
