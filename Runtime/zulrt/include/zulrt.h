#ifndef ZULRT_H
#define ZULRT_H

/* The C interface of libzulrt: plain C11 and C++.

   A design handle comes from one of the load functions and ends with ZulUnloadZulFile(). Any number of threads may ask
   one handle at the same time, unless it is being merged into or unloaded. Queries do not change errno on purpose and
   never fail in another way than by the value that is stated with them: "null handle" is what a null handle gives,
   "miss" what an index out of range or an unknown name gives.

   Modules, processes, parameters of a module, DMA channels, cameras, user infos and events are numbered from 0, in the
   order of the design; registers from 1.

   What a query returns by pointer belongs to the design and lives until it is unloaded, except the three full names of
   parameters: their buffer is the calling thread's, and the next call of the same function in that thread fills it
   anew. */

#include "zul_records.h"

#include <stddef.h> // NOLINT(modernize-deprecated-headers): this is C too
#include <stdint.h> // NOLINT(modernize-deprecated-headers)

/// A loaded design.
struct fpga_design;
/// A module of a loaded design; lives as long as the design.
struct zul_module_ext;

/// An event of a design.
struct zul_event_record {
    uint8_t queue;           ///< number of the user interrupt queue
    uint8_t bit;             ///< bit within the queue; 255: the event has the queue for itself
    uint8_t data_length;     ///< length of the data that comes with the event
    char const* name;        ///< null when there is none; backslashes have become underscores
    uint32_t register_index; ///< number of the event's register, 0 when there is none
    int32_t firmware;        ///< 1 for an event of the board's firmware, otherwise 0
};

/// Where the tag register of a DMA channel lies.
struct rz3_dma_tag_register {
    uint32_t address;
    uint32_t mask;
    uint32_t right_shift;
    uint32_t channel;
};

/// A user interrupt queue.
struct rz3_user_interrupt_queue {
    uint32_t address;
    uint32_t right_shift;
    uint32_t number;
    uint32_t depth;
    uint32_t direction; ///< 0x8151060 the host reads, 0x8151070 the host writes
    uint32_t max_burst_length;
};

/// The interrupt and DMA registers of a design, answered by ZulGetUserInfoByName() for "##_RZ3_DESIGN_SETTINGS". What
/// the design does not say has the value that boards without such a description use.
struct rz3_design_settings {
    uint32_t format; ///< 1
    uint32_t interrupt_vector_base;
    uint32_t interrupt_acknowledge;
    uint32_t interrupt_start;
    uint32_t dma_count_address[4]; ///< of DMA channels 0 to 3
    uint32_t reserved_32;
    struct rz3_dma_tag_register dma_tag[4]; ///< of DMA channels 0 to 3
    uint32_t local_interrupt;
    struct rz3_user_interrupt_queue queue[8]; ///< of queues 0 to 7
    uint32_t reserved_296;
};

#ifdef __cplusplus
#define ZULRT_ASSERT static_assert
extern "C" {
#else
#define ZULRT_ASSERT _Static_assert
typedef struct fpga_design fpga_design;
typedef struct zul_module_ext zul_module_ext;
typedef struct zul_param zul_param;
typedef struct zul_channel_param zul_channel_param;
typedef struct zul_event_record zul_event_record;
typedef struct rz3_design_settings rz3_design_settings;
#endif

/* Loading and unloading. On failure the handle is null and errno says why. */

/// ZulLoadZulFileWithType() for board type 0.
fpga_design* ZulLoadZulFile(char const* name, int opsys);
/// Loads the design file @p name.
/// @param name with a '/': the file's path; without: looked for in the directories of the board below the installation
///        directory, then below $KOVADIR5_64, $KOVADIR5 and $QELINSTALLDIR
/// @param boardType code of the board that the design is to run on; not used for a path
/// @param opsys 0: the design's libraries are not unpacked; otherwise they are, those for this system, and a library
///        file that is there already is left as it is (1 overwrites it, 2 replaces it; other numbers write into it)
/// @return the handle; null with errno ENOENT when the file is not found or no library is for this system, EINVAL for a
///         null name or something that is no container, EFAULT for a damaged tag or when no directory for the libraries
///         could be made, ENOMEM, or what opening, mapping or writing a file gave
fpga_design* ZulLoadZulFileWithType(char const* name, int boardType, int opsys);
/// ZulLoadZulFileWithType() that tells which file it took.
/// @param path receives the path of the file, which the caller releases with free() or, in C++, with delete[]; null
///        after a failure; may be null
fpga_design* ZulLoadZulFileWithTypeEx(char const* name, char** path, int boardType, int opsys);
/// Loads a design from @p length bytes at @p data, which have to stay as they are until the design is unloaded.
/// @param opsys as for ZulLoadZulFileWithType()
/// @return the handle; null with errno as there, but with what making the directory gave when there is none
fpga_design* ZulLoadDesignFromBuffer(void const* data, unsigned long length, int opsys);
/// Ends the design: every pointer that it handed out is invalid. Removes a private directory of its libraries unless the
/// tweak "ZULRT::RemoveTempDir" says otherwise; a directory that other processes share stays.
/// @return 0; -1 for a null handle
int ZulUnloadZulFile(fpga_design* design);
/// A design that holds nothing but the version of the fixed part of the FPGA that it needs.
/// @param version its lower 8 bits count
/// @param revision its lower 8 bits count
/// @return the handle; null when memory runs out
fpga_design* ZulFirmwareTrampoline(int version, int revision);

/* Merging: the tags of a second container are added to a design. Processes and modules of the second are renumbered
   behind those of the design; the user interrupt queues of the side with the higher configuration index move up by 16.
   A merge that fails leaves the design as it was. After a merge, names, types, processes and cameras of modules see all
   modules; library names, factories, module handles, parameters of modules and the process of a DMA channel see those
   that were there at the load. */

/// Merges the container file @p file into @p design.
/// @return 0; -1 with errno EINVAL for a null handle, ENOMEM when memory runs out, and otherwise why the file does not
///         load; -113 with errno EINVAL when a register link of the design does not resolve, or does to a register of
///         another kind, or a tag contradicts the design
int MergeFpgaDesign(fpga_design* design, char const* file);
/// Merges the container in @p length bytes at @p data, which are not needed afterwards. @return as MergeFpgaDesign()
int MergeFpgaDesignWithMem(fpga_design* design, void const* data, unsigned long length);
/// Writes a copy of the design without bitstreams, destinations, libraries and version numbers.
/// @param buffer null to ask for the length
/// @param length in: bytes at @p buffer; out: bytes of the copy
/// @return 0; -1 for a null handle, and when the buffer is null or too small: then *length is what is needed; -1 with
///         errno EINVAL for a null length or a design that cannot be saved, ENOMEM when memory runs out: *length is as
///         it was
int ZulStripConfigs(fpga_design const* design, void* buffer, unsigned long* length);

/* Modules */

int ZulGetNrOfModules(fpga_design const* design); ///< null handle: -1
/// The module's handle. Null handle, miss: null
zul_module_ext* ZulGetModuleByNumber(fpga_design const* design, unsigned int module);
/// The name of the instance. Miss: null. A null handle is not looked for here, and ends the process.
char const* ZulGetModuleName(fpga_design const* design, unsigned int module);
/// The operator's type. Null handle, miss: null
char const* ZulGetModuleTyp(fpga_design const* design, unsigned int module);
/// The name with its hierarchy, parts separated by backslashes. Null handle, miss: null
char const* ZulGetModuleFullName(fpga_design const* design, unsigned int module);
/// File name of the operator's library, "lib<type>.dylib". Null handle, miss, module without type: null
char const* ZulGetModuleDllName(fpga_design const* design, unsigned int module);
/// The directory with the design's libraries. Null handle, libraries not unpacked: null
char const* ZulGetModuleDllDir(fpga_design const* design);
/// Name of the operator's factory in its library, "<type>QelLocalCreate". Null handle, miss, module without type: null
char const* ZulGetModuleDecoratedName(fpga_design const* design, unsigned int module);
/// Null handle, miss: null
char const* ZulGetModuleProcessName(fpga_design const* design, unsigned int module);
/// Null handle, miss: -1
int ZulGetModuleProcessId(fpga_design const* design, unsigned int module);

/* Parameters and channels of a module handle */

/// The record of a parameter. Null handle, miss: null
zul_param* ZulModuleGetParam(zul_module_ext const* module, unsigned int param);
unsigned int ZulModuleGetParamCount(zul_module_ext const* module); ///< null handle: 0
/// The record of a channel. Null handle, miss: null
zul_channel_param* ZulModuleGetChannel(zul_module_ext const* module, unsigned int channel);
unsigned int ZulModuleGetChannelCount(zul_module_ext const* module); ///< null handle: 0

/* Processes */

int ZulGetNrOfProcess(fpga_design const* design); ///< null handle: -1
/// Null handle, miss: null
char const* ZulGetProcessName(fpga_design const* design, unsigned int process);
/// Null handle, miss: -1
int ZulGetProcessId(fpga_design const* design, unsigned int process);
/// The clock as the design tool stored it. Null handle: -1, miss: 0
int ZulGetProcessClk(fpga_design const* design, unsigned int process);

/* Parameters, by module and position within it ("relative") or by position among all of the design ("absolute") */

/// Number of parameters of @p module. Null handle, miss: -1
int ZulGetNrOfParam(fpga_design const* design, unsigned int module);
/// Null handle, miss, no name: null
char const* ZulGetParamName(fpga_design const* design, unsigned int module, unsigned int param);
/// The module's full name, '_' and the parameter's name, with every backslash an underscore. In a buffer of the thread.
/// Null handle, miss: null
char const* ZulGetParamFullName(fpga_design const* design, unsigned int module, unsigned int param);
/// The module's full name, a backslash and the parameter's name. In a buffer of the thread. Null handle, miss: null
char const* ZulGetParamFullNameHier(fpga_design const* design, unsigned int module, unsigned int param);
/// The lower 32 bits of an integer parameter. Null handle, miss, other types: 0
uint32_t ZulGetParamValue(fpga_design const* design, unsigned int module, unsigned int param);
/// The value of an integer parameter. Null handle, miss, other types: 0
uint64_t ZulGetParamValue64(fpga_design const* design, unsigned int module, unsigned int param);
/// The value of a double parameter. Null handle, miss: 0; other types: NaN
double ZulGetParamValueDouble(fpga_design const* design, unsigned int module, unsigned int param);
/// Flags of the design tool. Null handle, miss: 0
uint32_t ZulGetParamFlags(fpga_design const* design, unsigned int module, unsigned int param);
/// The absolute position of a relative one. Null handle, miss: -1
int ZulGetAbsolutParamIndex(fpga_design const* design, unsigned int module, unsigned int param);
/// The relative position of an absolute one. Null handle, no such module: -1; a parameter of another module, or no such
/// parameter: 0, as for the first one
int ZulGetRelativeParamIndex(fpga_design const* design, unsigned int module, unsigned int absolute);
int ZulGetNrOfParameter(fpga_design const* design); ///< of all modules; null handle: -1
/// The index of the parameter's module. Null handle: -1, miss: 0
int ZulGetParamModuleIndex(fpga_design const* design, unsigned int absolute);
/// The lower 32 bits of an integer parameter. Null handle, miss, other types: 0
uint32_t ZulGetAbsolutParamValue(fpga_design const* design, unsigned int absolute);
/// Null handle, miss, no name: null
char const* ZulGetParameterName(fpga_design const* design, unsigned int absolute);
/// The module's full name, a backslash and the parameter's name, at most 511 characters of it. In a buffer of the
/// thread. Null handle, miss: null
char const* ZulGetParameterFullName(fpga_design const* design, unsigned int absolute);

/* DMA channels and cameras */

int ZulGetNrOfDmas(fpga_design const* design); ///< null handle: -1
/// Largest width in pixels. Null handle, miss: -1
int ZulGetDmaWidth(fpga_design const* design, unsigned int dma);
/// Largest height in lines. Null handle, miss: -1
int ZulGetDmaHeight(fpga_design const* design, unsigned int dma);
/// Null handle, miss: -1
int ZulGetDmaFormat(fpga_design const* design, unsigned int dma);
/// Null handle, miss: -1
int ZulGetDmaBitWidth(fpga_design const* design, unsigned int dma);
/// Index of the DMA's module. Null handle, miss: -1
int ZulGetDmaModuleNr(fpga_design const* design, unsigned int dma);
/// Null handle, miss: -1
int ZulGetDmaChannel(fpga_design const* design, unsigned int dma);
/// Id of the process that the DMA's module belongs to, its index taken as a position. Null handle, miss: -1
int ZulGetProcessNrFromDmaChannel(fpga_design const* design, unsigned int dma);
int ZulGetNrOfCams(fpga_design const* design); ///< null handle: -1
/// Null handle, miss: -1
int ZulGetCamChannel(fpga_design const* design, unsigned int camera);
/// Number of cameras of the process with the id @p process. Null handle: -1
int ZulGetNrOfCamsPerProcess(fpga_design const* design, int process);
/// Channel of the @p n-th camera of the process with the id @p process. Null handle, miss: -1
int ZulGetCamChannelPerProcess(fpga_design const* design, unsigned int n, int process);

/* Registers, numbered from 1 */

int ZulGetNrOfRegister(fpga_design const* design); ///< null handle: -1
/// The number of the register with that name or alias. Null handle, miss, null name: 0
uint32_t ZulGetRegisterByName(fpga_design const* design, char const* name);
/// Number of its bits. Null handle: -1, miss: 0
int ZulGetRegisterBitRange(fpga_design const* design, unsigned int reg);
/// Its lowest bit. Null handle: -1, miss: 0
int ZulGetRegisterBitPos(fpga_design const* design, unsigned int reg);
/// The value that it begins with. Null handle, miss: 0
uint64_t ZulGetRegisterInitValue(fpga_design const* design, unsigned int reg);
/// 1 when it can be written, otherwise 0. Null handle: -1, miss: 0
int ZulGetRegisterDirection(fpga_design const* design, unsigned int reg);
/// Null handle: 0, miss: -1
int ZulGetRegisterAddress(fpga_design const* design, unsigned int reg);
/// Null handle, miss: null
char const* ZulGetRegisterName(fpga_design const* design, unsigned int reg);

/* User infos */

int ZulGetNrOfUserInfos(fpga_design const* design); ///< null handle: -1
/// The value: uint32_t const* for type 200, a text for type 300. Null handle, miss, other types: null
void const* ZulGetUserInfoByNumber(fpga_design const* design, unsigned int info);
/// The value of the first user info with that name, as above. Two names are answered by the library itself:
/// "##_RZ3_DESIGN_SETTINGS" with an rz3_design_settings, "DESIGN_NAME" with the design's name.
/// Null handle, miss, null name: null
void const* ZulGetUserInfoByName(fpga_design const* design, char const* name);
/// 200 or 300. Null handle: -1, miss: 0
int ZulGetUserInfoTypByNumber(fpga_design const* design, unsigned int info);
/// 200 or 300, of the first user info with that name; the two reserved names are not known here. Null handle: -1,
/// miss, null name: 0
int ZulGetUserInfoTypByName(fpga_design const* design, char const* name);

/* The design as a whole */

/// Null handle, no version: null
char const* ZulGetDesignVersion(fpga_design const* design);
/// The first version number. @return 0; -1 when there is none, and for a null argument: nothing is stored then
int ZulGetDesignVersionNumber(fpga_design const* design, int* version, int* revision);
/// The version of the fixed part of the FPGA that the design needs. Null pointers are left out.
/// @return 0; -1 for a null handle and when the design needs none: nothing is stored then
int ZulGetRequiredFixedVersion(fpga_design const* design, uint16_t* version, uint16_t* revision);
/// Null handle, no configuration: -1
int ZulGetMaxConfigIndex(fpga_design const* design);
/// The bitstream of the first configuration with @p index.
/// @param board 0 for any; a board type; or, with one of the bits 0xF000 set, board type * 16 + revision
/// @param length receives its bytes unless null; not touched by a miss
/// @return its bytes. Null handle, miss: null
void const* ZulGetConfigData(fpga_design const* design, unsigned int index, unsigned int board,
                             unsigned long* length);
/// As ZulGetModuleDllDir().
char const* ZulGetOperatorDir(fpga_design const* design);
/// 1 when the design has a library for @p opsys or no library at all, otherwise 0. Null handle: -1
int ZulSupportsOs(fpga_design const* design, unsigned int opsys);
/// Event records lie 24 bytes apart and live until the design is unloaded, also over a merge. Null handle, miss: null
zul_event_record const* ZulGetEvent(fpga_design const* design, unsigned int event);
void const* ZulGetDesignData(fpga_design const* design); ///< always null
int ZulGetDesignLength(fpga_design const* design);       ///< always 0; null handle: -1
int ZulGetDesignTyp(fpga_design const* design);          ///< always 0; null handle: -1

/* Tables. What they return is static. */

/// The part string of an FPGA type. Miss: null
char const* FPGAtype2RBTstring(int code);
/// The FPGA type with exactly that part string. Miss, null: 0xFFFFFFFF
unsigned int RBTstring2FPGAtype(char const* part);
/// The directory name of an FPGA type. Miss: null
char const* FPGA2dirname(int code);

ZULRT_ASSERT(offsetof(struct zul_event_record, queue) == 0, "layout");
ZULRT_ASSERT(offsetof(struct zul_event_record, bit) == 1, "layout");
ZULRT_ASSERT(offsetof(struct zul_event_record, data_length) == 2, "layout");
ZULRT_ASSERT(offsetof(struct zul_event_record, name) == 8, "layout");
ZULRT_ASSERT(offsetof(struct zul_event_record, register_index) == 16, "layout");
ZULRT_ASSERT(offsetof(struct zul_event_record, firmware) == 20, "layout");
ZULRT_ASSERT(sizeof(struct zul_event_record) == 24, "layout");

ZULRT_ASSERT(offsetof(struct rz3_design_settings, format) == 0, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, interrupt_vector_base) == 4, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, interrupt_acknowledge) == 8, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, interrupt_start) == 12, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, dma_count_address) == 16, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, dma_tag) == 36, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, local_interrupt) == 100, "layout");
ZULRT_ASSERT(offsetof(struct rz3_design_settings, queue) == 104, "layout");
ZULRT_ASSERT(sizeof(struct rz3_dma_tag_register) == 16, "layout");
ZULRT_ASSERT(sizeof(struct rz3_user_interrupt_queue) == 24, "layout");
ZULRT_ASSERT(sizeof(struct rz3_design_settings) == 300, "layout");

ZULRT_ASSERT(offsetof(struct zul_param, param_index) == 12, "layout");
ZULRT_ASSERT(sizeof(struct zul_param) == 144, "layout");
ZULRT_ASSERT(sizeof(struct zul_channel_param) == 128, "layout");

#ifdef __cplusplus
}
#endif

#undef ZULRT_ASSERT

#endif
