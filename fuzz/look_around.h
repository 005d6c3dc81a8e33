#pragma once

class ZUL;

/// Asks a loaded container through the lookups that the format's names and numbers feed: what is in it is found.
void lookAround(ZUL const& zul);
