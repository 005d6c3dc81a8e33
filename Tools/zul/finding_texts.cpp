#include "findings.h"

#include <algorithm>
#include <array>

namespace {

using enum Level;

// clang-format off
constexpr std::array texts{

// The container as a whole, and the length and values of each tag.

RuleText{Rule::NotAContainer, Error, "not a container",
    "A container begins with a head of 24 bytes whose first four are 4D 56 4F 4B (the number 0x4B4F564D). The file "
    "is shorter than a head or begins with something else; nothing in it can be read.",
    "Is it the right file, and was it transferred in binary and completely?"},
RuleText{Rule::BadLength, Error, "length contradicts the layout",
    "Most tags have one fixed length; the others state how long their variable parts are, and the length of the tag "
    "has to be the fixed part and those parts together. A load refuses the tag.",
    "The writer of the file has a defect, or the length or one of the inner lengths is damaged."},
RuleText{Rule::BadValue, Error, "value that the format does not allow",
    "The format restricts this field, and a load refuses the tag as malformed.",
    "The writer of the file has a defect, or the byte is damaged."},
RuleText{Rule::LengthBelowHeader, Error, "length of less than a header",
    "A length counts the tag's own header of 8 bytes. Where the next tag begins is unknown, so everything from here "
    "to the end of the file is lost.",
    "The length field is damaged, or the tag before this one has a wrong length."},
RuleText{Rule::LengthOverEnd, Error, "length reaches over the end of the file",
    "The tag states more bytes than there are up to the end of the file. Everything from here on is lost.",
    "The file was cut short, or the length field is damaged."},
RuleText{Rule::UnknownTag, Warning, "unknown tag takes the rest of the file",
    "A tag with an id that the format does not define is kept as raw bytes, and it takes everything from its header "
    "to the end of the file, whatever its length says: tags behind it are kept but never seen.",
    "Remove the tag, make it the last one, or use a library that knows it."},
RuleText{Rule::TagCountDiffers, Error, "number of tags differs from the head",
    "The head announces how many tags follow, configuration data not included. Second libraries of a name count, "
    "though they are dropped; several design versions count once, as do several version numbers of one index. A "
    "strict load refuses any difference.",
    "Tags were added or lost without correcting the head; saving the container again writes the right number."},
RuleText{Rule::ConfigCountDiffers, Error, "number of configurations differs from the head",
    "The head announces how many configuration data tags follow. A strict load refuses any difference.",
    "Configurations were added or lost without correcting the head; saving the container again writes the right "
    "number."},
RuleText{Rule::Padding, Note, "padding behind the last tag",
    "The last 8 bytes of a file never begin a tag. Up to 8 zero bytes lie behind the last tag; a load ignores them.",
    "Nothing needs to be done."},
RuleText{Rule::IgnoredBytes, Warning, "bytes behind the last tag are ignored",
    "The last 8 bytes of a file never begin a tag. Up to 8 bytes that are not all zero lie behind the last tag; a load "
    "ignores them without an error, even where they look like the header of a tag.",
    "See whether something was cut off there."},
RuleText{Rule::LargerThanLoaded, Error, "file larger than a load can see",
    "A load of a file sees the lower 27 bits of its size: of a file of 128 MiB or more only a part is read, and a "
    "file of an exact multiple of 128 MiB is refused.",
    "Split the design, or load it from memory."},
RuleText{Rule::SecondHead, Error, "second container head",
    "A container has one head, at its beginning. A load refuses a second one.",
    "Two containers were joined by appending one to the other; merge them instead."},
RuleText{Rule::SecondSingle, Error, "second tag of a kind that occurs once",
    "A container has at most one author and one design name. A load refuses a second one.",
    "Remove one of the two."},
RuleText{Rule::ReplacedVersion, Warning, "earlier version is replaced",
    "A later design version replaces an earlier one, and so does a version number with the index of an earlier one. "
    "The earlier one is never seen.",
    "Remove the earlier one."},

// References and names.

RuleText{Rule::ReferenceToNothing, Error, "reference to nothing",
    "The tag names a process, a module or a register that the container does not hold. A load refuses the tag.",
    "Add what is missing, or correct the number or name."},
RuleText{Rule::ReferenceBeforeTarget, Error, "reference before its target",
    "References are resolved while the tag is read, among the tags before it. What the tag refers to comes later in "
    "the file, so a load refuses the tag.",
    "Write processes before modules, modules before what belongs to them, registers before events."},
RuleText{Rule::ModuleIndexTwice, Warning, "module index used twice",
    "An earlier module has the same index. Whatever names the module by index belongs to the first one.",
    "Give each module an index of its own."},
RuleText{Rule::ProcessIdTwice, Warning, "process id used twice",
    "An earlier process has the same id. Whatever names the process by id belongs to the first one.",
    "Give each process an id of its own."},
RuleText{Rule::TextFillsField, Note, "text fills its field",
    "A text of exactly the width of its field is stored without a terminator. It may be the rest of a longer one "
    "that was cut silently.",
    "See whether the end of the text is missing."},
RuleText{Rule::NameCutForCallers, Warning, "name is handed out cut to 63 characters",
    "Names of parameters and channels have room for 64 characters, but the records that programs are given hold 63 "
    "and a terminator.",
    "Use a name of at most 63 characters."},
RuleText{Rule::RegisterNameTooLong, Note, "register name that no link can name",
    "The name of a register in the newer layout may have any length, but the target of a register link holds 64 "
    "characters, and the older layout has room for no more.",
    "Use a name of at most 64 characters where the register needs an alias."},
RuleText{Rule::EventWithoutName, Warning, "event that cannot be saved",
    "The event's name is empty. The container loads, but an event without a name cannot be saved, so neither can the "
    "container (a stored name that begins with a terminator is lost by one save, and the next one fails).",
    "Name the event."},
RuleText{Rule::EventNameTooLong, Error, "event name of 256 characters",
    "An event may be given a name of 256 characters, but its length is stored in one byte, as 0. The length of the "
    "tag is right only with 256 characters, so a load refuses it as malformed.",
    "Use a name of at most 255 characters."},

// Registers.

RuleText{Rule::BitsOutOfOrder, Warning, "least significant bit above the most significant",
    "The register's lsb is larger than its msb: it occupies no bits. Loading does not check it.",
    "Exchange the two."},
RuleText{Rule::BitBeyond64, Warning, "bit number beyond 64",
    "Bits are numbered up to 64, the default of msb. In the older layout only the low byte of the word is used.",
    "Correct the bit number."},
RuleText{Rule::ValueOutsideBits, Warning, "value outside the register's bits",
    "What setting a register's address and value would refuse: msb below 63 and a value above 2^(msb+1)-1, or lsb not "
    "0 and one of the value's bits below bit lsb-1 set. Not looked at where the bits themselves are wrong.",
    "Correct the value or the bits."},
RuleText{Rule::OverlappingBits, Warning, "bits overlap those of another register",
    "Another register with the same address, access and writability has bits in common with this one (lsb to msb, "
    "both included, as stored): writing one changes the other. Registers that differ in access or writability may "
    "share an address.",
    "Correct the address or the bits, or make one an alias of the other."},
RuleText{Rule::RegisterNameTwice, Error, "register name that is known already",
    "An earlier register has the same name, or an earlier link has it as its alias and leads to a register. A load "
    "refuses the second register.",
    "Rename one of the two."},
RuleText{Rule::LinkToEarlierAlias, Error, "link to an earlier alias",
    "The link's target is the alias of an earlier link. A load takes every such link for a loop and refuses it, "
    "whether there is a circle or not; a link may lead to an alias that comes later.",
    "Let the link lead to the register itself, or put it before the other link."},
RuleText{Rule::LinkInCircle, Error, "link in a circle",
    "Following the link leads back to it, and no register has one of the names on the way: the alias names nothing. "
    "A load finds only the last link of a longer circle, and none that leads to itself.",
    "Let one of the links lead to a register."},
RuleText{Rule::LinkToNothing, Warning, "link to nothing",
    "Following the link leads to no register of this container, so the alias names nothing, and a merge refuses the "
    "design unless the other design has a register of that name.",
    "Add the register, or correct the target."},
RuleText{Rule::LinkAccessDiffers, Warning, "link and register differ in access",
    "The link's access or writability is not that of the register it leads to. A merge of the design refuses it.",
    "Give both the same access and writability."},
RuleText{Rule::LinkWithoutAlias, Warning, "link without alias",
    "The link has no alias, so nothing can be found by it.",
    "Remove the link, or give it an alias."},

// Parameters.

RuleText{Rule::ParameterCountDiffers, Warning, "stored parameter count differs",
    "The module states another number of parameters than there are parameter tags with its index. The number is not "
    "used when the design is loaded. 0 is not reported: a module that was made by this library states 0.",
    "Parameters are missing, or the count is out of date."},
RuleText{Rule::ChannelCountDiffers, Warning, "stored channel count differs",
    "The module states another number of channels than there are channel tags with its index. The number is not used "
    "when the design is loaded. 0 is not reported: a module that was made by this library states 0.",
    "Channels are missing, or the count is out of date."},
RuleText{Rule::LinkModuleUnknown, Warning, "parameter link to an unknown module name",
    "When a design is opened, a parameter link is resolved again by the full name of its destination module. No "
    "module has that name, so the link stays as it is stored. A link without a module name is not reported.",
    "Correct the destination module name."},
RuleText{Rule::LinkParameterUnknown, Warning, "parameter link to an unknown parameter name",
    "The first module with the link's destination module name has no parameter with the link's destination name, so "
    "the stored parameter index stays. A link without a destination name is not reported.",
    "Correct the destination name."},

// Configurations and settings.

RuleText{Rule::LateDestination, Warning, "destination after its configuration",
    "A configuration is bound to a destination of its index that comes before it in the file. The only ones come "
    "later, so it stays unbound, and its FPGA type is taken for its board type.",
    "Write destinations before configurations."},
RuleText{Rule::UnknownFpgaType, Warning, "unknown FPGA type",
    "The FPGA type is not in the table of types, so it has no part name.",
    "Correct the type; containers without destinations keep the board type there."},
RuleText{Rule::ChannelOutsideSettings, Warning, "DMA channel outside the settings",
    "The settings block of a design has room for DMA count registers and DMA tag registers of channels 0 to 3. One of "
    "another channel is ignored.",
    "Use a channel of 0 to 3."},
RuleText{Rule::QueueOutsideSettings, Warning, "queue outside the settings",
    "The settings block of a design has room for user interrupt queues 0 to 7. A queue of another number is ignored.",
    "Use a number of 0 to 7."},
RuleText{Rule::NoContainerId, Warning, "no container id",
    "The id is the text of the first user info named __ZUL_ID__. There is none, or it is no text or an empty one: the "
    "design's libraries are unpacked anew by every load, and a save makes an id that says that it is not valid.",
    "Give the container an id."},
RuleText{Rule::PlaceholderId, Warning, "placeholder for a container id",
    "The id is __INVALID_ZUL_ID__, which saving writes when there is none. Unpacked libraries are kept in a directory "
    "named after the id: all designs with the placeholder share it, and those whose libraries differ unpack their own with every load.",
    "Give the container an id of its own."},
RuleText{Rule::UnsafeId, Error, "container id that is no directory name",
    "The id becomes part of the name of a directory. One with '/' or '..' could lead somewhere else.",
    "Use letters, digits, '-' and '_'."},
RuleText{Rule::NoBoardCode, Warning, "design version without board code",
    "The fifth and sixth characters of the design version are the board code, two digits of 0 to 9 and a to f; "
    "capital letters do not count. The text is shorter, or has something else there, and the board type is unknown "
    "(22). A container without a design version, or with an empty one, is not reported.",
    "Put the board code into the version, as in 0001020000."},
RuleText{Rule::UnknownBoardCode, Warning, "design version with an unknown board code",
    "The board code, the fifth and sixth characters of the design version, is not one of 00, 01, 02 and 04, and the "
    "board type is unknown (65535).",
    "Correct the board code."},

// Libraries.

RuleText{Rule::LibraryTwice, Warning, "second library of a name is dropped",
    "An earlier library has the same name and system. A load drops this one without comparing the two.",
    "Remove one of the two."},
RuleText{Rule::UnsafeLibraryName, Error, "library name that is no file name",
    "The name becomes part of the name of a file. One with '/' is refused when libraries are written, and one with "
    "'..' is not a name that a library has.",
    "Use the short name of the library, without directory."},
RuleText{Rule::LibraryDoesNotInflate, Error, "library does not inflate",
    "The library is stored compressed, and its bytes are no complete zlib stream with a right checksum. Writing the "
    "libraries fails.",
    "Store the library again."},
RuleText{Rule::LibraryNotTried, Note, "library was not inflated to its end",
    "The compressed libraries of the file grow to more than 64 times the size of the file and 64 MiB; what lies "
    "beyond was not looked at.",
    "See what the library is: no honest one is compressed that well."},
};
// clang-format on

constexpr bool byRule(RuleText const& left, RuleText const& right)
{
    return left.rule < right.rule;
}

static_assert(std::is_sorted(texts.begin(), texts.end(), byRule));

} // namespace

std::span<RuleText const> ruleTexts() noexcept
{
    return texts;
}
