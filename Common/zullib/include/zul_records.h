#pragma once

/* Records that cross the C interface as they are: plain C11 and C++. */

#include <stddef.h> // NOLINT(modernize-deprecated-headers): this is C too
#include <stdint.h> // NOLINT(modernize-deprecated-headers)

/// What callers of the C interface see of a parameter. Order, widths and offsets of the fields are part of
/// that interface. The pointers lead into the design: they live as long as it does.
struct zul_param {
    uint64_t reserved;     ///< 0
    uint32_t module_index; ///< index of the parameter's module
    int32_t param_index;   ///< position among all parameters of the design
    char name[64];         ///< the first 63 characters, padded with NUL; empty when there is no name
    uint64_t value;        ///< 0 unless the type is an integer one (1 to 4)
    double double_value;   ///< NaN unless the type is the double one (5)
    uint32_t flags;        ///< of the design tool
    uint32_t type;       ///< 1 to 4 integer, 5 double, 6 and 7 integer field, 8 double field, 13, 14, 16 text
    uint32_t field_size; ///< number of field elements
    void const* field;   ///< the elements, 8 bytes each and not aligned, or null
    void const* field_again;  ///< the same
    char const* param_string; ///< the text, or null
    uint32_t string_length;   ///< characters of the text
};

/// What callers of the C interface see of an image channel. Order, widths and offsets of the fields are part
/// of that interface.
struct zul_channel_param {
    uint64_t reserved;     ///< 0
    uint32_t input;        ///< 1 for an input channel, 0 for an output
    uint32_t module_index; ///< index of the channel's module
    uint32_t link_index;
    char name[64]; ///< the first 63 characters, padded with NUL; empty when there is no name
    uint32_t format_index;
    uint32_t arith;
    uint32_t flavor;
    uint32_t width;
    uint32_t position;
    uint32_t parallel;
    uint32_t kernel_rows;
    uint32_t kernel_columns;
    uint32_t max_width;
    uint32_t max_height;
};
