#pragma once

#include "tag_fields.h"
#include "walker.h"

#include <span>
#include <string>

struct Session;

/// Tells on session.err what is wrong with the bytes of @p tags, which are tags of @p walk, the first few of many: file,
/// offset, tag, field, expected and found. session.result becomes Damaged when there is anything.
///
/// These are the things that a tag's layout demands and the lengths that end a walk; `zul check` knows more.
void reportDamage(Session& session, std::string const& fileName, Walk const& walk,
                  std::span<WalkedTag const> tags);
/// As above about the head, all tags and a file that is no container.
void reportDamage(Session& session, std::string const& fileName, Walk const& walk);

/// "process", "unknown tag"
char const* kindName(WalkedTag const& tag) noexcept;
