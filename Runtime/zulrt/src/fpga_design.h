#pragma once

#include "design_settings.h"
#include "design_tags.h"
#include "library_directory.h"
#include "mapped_file.h"
#include "zul_module_ext.h"
#include "zulrt.h"

#include <cstdint>
#include <memory>
#include <vector>

class ZUL;

/// A loaded design: its container, the file that it was read from, its unpacked libraries, and what is gathered for the
/// queries. What every handle of the C interface points to.
///
/// Queries are safe from any number of threads; everything else needs the object for itself. What a query returns by
/// pointer lives until the next load into the object, or its end.
struct fpga_design final {
public:
    /// An empty design. Asks the tweak "ZULRT::RemoveTempDir" whether private library directories are removed.
    fpga_design();
    fpga_design(fpga_design const&) = delete;
    fpga_design& operator=(fpga_design const&) = delete;
    ~fpga_design();

    // Loading. What an earlier load into this object made is released first, except the library directory, which a load
    // from a file replaces and a load from a buffer keeps.

    /// @param path receives the path of the file, made with new[]; after a result from mapping or reading the file too,
    ///        null after any other failure. May be null.
    /// @param opsys 0: no libraries are unpacked; otherwise the ZUL_dll::savepolicy of doing so
    /// @return 0; -2 when the file is not found, -22 for a null name, a negated errno of mapping it, a result of
    ///         LoadDesignFromBuffer or of unpackLibs, -14 when there is no directory for the libraries, -12
    int LoadDesignWithType(char const* name, char** path, int boardType, int opsys);
    /// @param data is not copied
    /// @return 0; -22 when it is no container or its counts differ, -14 for a damaged tag or after an unexpected
    ///         exception, -12 when memory runs out
    int LoadDesignFromBuffer(void const* data, unsigned long length);
    /// LibraryDirectory::unpack for the container. @return its result; -22 when nothing is loaded, -12 for std::bad_alloc,
    ///         -14 for other exceptions
    int unpackLibs(unsigned int opsys);
    /// Gathers the modules with their parameters and channels, and leads every parameter link to the module and
    /// parameter that its texts name; what they do not name stays as it was loaded. @return 0
    int EvaluateModuleData();
    /// Makes the table of events, with backslashes in their names replaced, in the tags too. A table that was made
    /// before stays readable.
    void setupEvents();
    /// Names the library and the factory of every module that has a type.
    void ScanDllDir();

    // Changing and deriving.

    /// Adds the tags of @p other, all or none of them.
    /// @return 0; -113 with errno EINVAL when checkRegisterLinks() or a rule of the container refuses it, -1 with errno
    ///         ENOMEM
    int merge(ZUL const* other);
    /// Writes a copy without bitstreams, destinations, libraries and version numbers.
    /// @param buffer null to ask for the length; reserved bytes are written as zero
    /// @param length in: bytes at @p buffer, out: bytes of the copy
    /// @return 0; -1 when there are too few bytes; -1 with errno EINVAL for a null @p length and a design that cannot
    ///         be saved, ENOMEM, and then *length is as it was
    int stripConfigs(void* buffer, unsigned long* length) const;
    /// A design with nothing but a fixed FPGA info. @return made with new; null when memory runs out
    static fpga_design* createTrampoline(unsigned char version, unsigned char revision) noexcept;

    // Queries. Each answers the value in its comment when there is nothing to answer.

    // clang-format off
    unsigned int GetNrOfModules() const noexcept;
    zul_module_ext* GetModuleByNumber(unsigned int module) const noexcept;                       // null
    zul_module_ext* GetModuleByName(char const* fullName) const noexcept;                        // null
    char const* GetModuleName(unsigned int module) const noexcept;                               // null
    char const* GetModuleTyp(unsigned int module) const noexcept;                                // null
    char const* GetModuleFullName(unsigned int module) const noexcept;                           // null
    char const* GetModuleProcessName(unsigned int module) const noexcept;                        // null
    int GetModuleProcessId(unsigned int module) const noexcept;                                  // -1
    char const* GetModuleDllName(unsigned int module) const noexcept;                            // null
    char const* GetModuleDecoratedName(unsigned int module) const noexcept;                      // null
    char const* GetModuleDllDir() const noexcept { return m_libraries.path(); }                  // null
    char const* getOperatorDir() const noexcept { return m_libraries.path(); }                   // null

    unsigned int GetNrOfProcess() const noexcept;
    char const* GetProcessName(unsigned int process) const noexcept;                             // null
    int GetProcessId(unsigned int process) const noexcept;                                       // -1
    int GetProcessClk(unsigned int process) const noexcept;                                      // 0

    int GetNrOfParams(unsigned int module) const noexcept;                                       // -1
    char const* GetParamName(unsigned int module, unsigned int param) const noexcept;            // null
    char const* GetParamFullName(unsigned int module, unsigned int param) const noexcept;        // null
    char const* GetParamFullNameHier(unsigned int module, unsigned int param) const noexcept;    // null
    std::uint32_t GetParamValue(unsigned int module, unsigned int param) const noexcept;         // 0
    std::uint64_t GetParamValue64(unsigned int module, unsigned int param) const noexcept;       // 0
    double GetParamValueDouble(unsigned int module, unsigned int param) const noexcept;          // 0
    std::uint32_t GetParamFlags(unsigned int module, unsigned int param) const noexcept;         // 0
    int GetAbsolutParamIndex(unsigned int module, unsigned int param) const noexcept;            // -1
    int GetRelativeParamIndex(unsigned int module, unsigned int absolute) const noexcept;        // -1, 0
    unsigned int getParamCount() const noexcept;
    ZUL_param* GetParamByNumber(unsigned int absolute) const noexcept;                           // null
    int GetParamModuleIndex(unsigned int absolute) const noexcept;                               // 0
    std::uint32_t GetAbsolutParamValue(unsigned int absolute) const noexcept;                    // 0
    char const* GetParameterName(unsigned int absolute) const noexcept;                          // null
    char const* GetParameterFullName(unsigned int absolute) const noexcept;                      // null

    unsigned int GetNrOfDmas() const noexcept;
    int GetDmaWidth(unsigned int dma) const noexcept;                                            // -1
    int GetDmaHeight(unsigned int dma) const noexcept;                                           // -1
    int GetDmaFormat(unsigned int dma) const noexcept;                                           // -1
    int GetDmaBitWidth(unsigned int dma) const noexcept;                                         // -1
    int GetDmaModuleNr(unsigned int dma) const noexcept;                                         // -1
    int GetDmaChannel(unsigned int dma) const noexcept;                                          // -1
    int GetProcessNrFromDmaChannel(unsigned int dma) const noexcept;                             // -1
    unsigned int GetNrOfCams() const noexcept;
    int GetCamChannel(unsigned int camera) const noexcept;                                       // -1
    int GetNrOfCamsPerProcess(int process) const noexcept;
    int GetCamChannelPerProcess(unsigned int n, int process) const noexcept;                     // -1

    unsigned int getRegisterCount() const noexcept;
    std::uint32_t getRegisterByName(char const* name) const noexcept;                            // 0
    ZUL_register* getRegisterAt(unsigned int number) const noexcept;                             // null
    int GetRegisterBitRange(unsigned int number) const noexcept;                                 // 0
    int GetRegisterBitPos(unsigned int number) const noexcept;                                   // 0
    std::uint64_t GetRegisterInitValue(unsigned int number) const noexcept;                      // 0
    int GetRegisterDirection(unsigned int number) const noexcept;                                // 0
    int GetRegisterAddress(unsigned int number) const noexcept;                                  // -1
    char const* GetRegisterName(unsigned int number) const noexcept;                             // null

    unsigned int GetNrOfUserInfos() const noexcept;
    void const* GetUserInfoByNumber(unsigned int info) const noexcept;                           // null
    void const* GetUserInfoByName(char const* name) const noexcept;                              // null
    int GetUserInfoTypByNumber(unsigned int info) const noexcept;                                // 0
    int GetUserInfoTypByName(char const* name) const noexcept;                                   // 0

    char const* getDesignVersionString() const noexcept;                                         // null
    int getDesignVersionNumber(int* version, int* revision) const noexcept;                      // -1
    int getRequiredFixedVersion(std::uint16_t* version, std::uint16_t* revision) const noexcept; // -1
    int getMaxConfigIndex() const noexcept;                                                      // -1
    void const* GetFpgaConfig(unsigned int index, unsigned int board, unsigned long* length) const noexcept; // null
    int supportsOs(unsigned int system) const noexcept;
    zul_event_record* getEvent(unsigned int event) const noexcept;                               // null
    // clang-format on

    /// The code of the board that the version string names: 22 when it names none, 65535 for a number without a board.
    int GetBoardType() const noexcept;
    /// The board's code for the two digits of a version string.
    static int GetBoardType(unsigned int number) noexcept;

private:
    void release() noexcept;
    int loadContainer(void const* data, unsigned long length);
    int loadFile(char const* path);
    ZUL_param* paramAt(unsigned int module, unsigned int param) const noexcept;

    /// One table of records. Earlier ones are kept for callers that still hold a record.
    struct EventTable {
        std::unique_ptr<zul_event_record[]> records;
        std::uint32_t count = 0;
    };
    EventTable makeEvents(DesignTags const& tags) const;

    MappedFile m_file; // what the container was read from; outlives it
    LibraryDirectory m_libraries;
    std::vector<EventTable> m_events; // the last one is the design's
    std::unique_ptr<ZUL> m_zul;
    DesignTags m_tags;
    std::unique_ptr<DesignSettings> m_settings;
    std::vector<std::unique_ptr<zul_module_ext>> m_modules; // as many as there were module tags at the load
    std::vector<std::uint32_t> m_relativeParams; // position within its module, by absolute position
};

/// Merges the container file @p file into @p design. Messages of a failed load go to standard output.
/// @return 0; -1 with errno: EINVAL for a null design, what loading the file gave; what fpga_design::merge returns
int mergeFpgaDesign(fpga_design* design, char const* file);
/// The same from memory, which is not needed afterwards.
int mergeFpgaDesign(fpga_design* design, void const* data, unsigned long length);

/// Replaces every backslash of @p text by an underscore, in place. @return @p text; null for null
char* RBS(char* text) noexcept;

/// errno
int GetLastError() noexcept;
