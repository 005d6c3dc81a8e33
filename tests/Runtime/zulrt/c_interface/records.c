#include "zulrt.h"

/* Where hosts find the fields of the records, in bytes: hosts were compiled with these numbers. */

#define AT(record, field, offset)                                                                            \
    _Static_assert(offsetof(struct record, field) == (offset), #record "." #field)

AT(zul_event_record, queue, 0);
AT(zul_event_record, bit, 1);
AT(zul_event_record, data_length, 2);
AT(zul_event_record, name, 8);
AT(zul_event_record, register_index, 16);
AT(zul_event_record, firmware, 20);
_Static_assert(sizeof(struct zul_event_record) == 24, "zul_event_record");

AT(zul_param, reserved, 0);
AT(zul_param, module_index, 8);
AT(zul_param, param_index, 12);
AT(zul_param, name, 16);
AT(zul_param, value, 80);
AT(zul_param, double_value, 88);
AT(zul_param, flags, 96);
AT(zul_param, type, 100);
AT(zul_param, field_size, 104);
AT(zul_param, field, 112);
AT(zul_param, field_again, 120);
AT(zul_param, param_string, 128);
AT(zul_param, string_length, 136);
_Static_assert(sizeof(struct zul_param) == 144, "zul_param");

AT(zul_channel_param, reserved, 0);
AT(zul_channel_param, input, 8);
AT(zul_channel_param, module_index, 12);
AT(zul_channel_param, link_index, 16);
AT(zul_channel_param, name, 20);
AT(zul_channel_param, format_index, 84);
AT(zul_channel_param, arith, 88);
AT(zul_channel_param, flavor, 92);
AT(zul_channel_param, width, 96);
AT(zul_channel_param, position, 100);
AT(zul_channel_param, parallel, 104);
AT(zul_channel_param, kernel_rows, 108);
AT(zul_channel_param, kernel_columns, 112);
AT(zul_channel_param, max_width, 116);
AT(zul_channel_param, max_height, 120);
_Static_assert(sizeof(struct zul_channel_param) == 128, "zul_channel_param");

AT(rz3_dma_tag_register, address, 0);
AT(rz3_dma_tag_register, mask, 4);
AT(rz3_dma_tag_register, right_shift, 8);
AT(rz3_dma_tag_register, channel, 12);
_Static_assert(sizeof(struct rz3_dma_tag_register) == 16, "rz3_dma_tag_register");

AT(rz3_user_interrupt_queue, address, 0);
AT(rz3_user_interrupt_queue, right_shift, 4);
AT(rz3_user_interrupt_queue, number, 8);
AT(rz3_user_interrupt_queue, depth, 12);
AT(rz3_user_interrupt_queue, direction, 16);
AT(rz3_user_interrupt_queue, max_burst_length, 20);
_Static_assert(sizeof(struct rz3_user_interrupt_queue) == 24, "rz3_user_interrupt_queue");

AT(rz3_design_settings, format, 0);
AT(rz3_design_settings, interrupt_vector_base, 4);
AT(rz3_design_settings, interrupt_acknowledge, 8);
AT(rz3_design_settings, interrupt_start, 12);
AT(rz3_design_settings, dma_count_address, 16);
AT(rz3_design_settings, reserved_32, 32);
AT(rz3_design_settings, dma_tag, 36);
AT(rz3_design_settings, local_interrupt, 100);
AT(rz3_design_settings, queue, 104);
AT(rz3_design_settings, reserved_296, 296);
_Static_assert(sizeof(struct rz3_design_settings) == 300, "rz3_design_settings");
