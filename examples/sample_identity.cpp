#include "sample_design.h"

namespace sample {

namespace {

void addVersionNumber(ZUL& design, unsigned char index, unsigned short version, unsigned short revision)
{
    ZUL_design_version_nr number(&design);
    number.setIndex(index);
    number.setVersion(version, revision);
    design.setDesignVersion(&number);
}

} // namespace

void addIdentity(ZUL& design)
{
    design.setDesignName("DualAreaInspection");
    // The fifth and sixth character are the code of the board: 01 stands for board type 2625.
    design.setDesignVersion("2.3.01");
    design.setAuthor("the libzulrt authors");

    add<ZUL_comment>(design).setComment(
        "Two area cameras: the first is triggered by an encoder, filtered and "
        "gamma-corrected, the second gives an overview at half the resolution.");
    addVersionNumber(design, 0, 2, 3);
    addVersionNumber(design, 1, 2, 1);
    add<ZUL_user_info>(design, "BuildNumber", 1482U);
    add<ZUL_user_info>(design, "BuildDate", "2023-10-17");
    add<ZUL_user_info>(design, "MaxLineRate", 140000U);
    add<ZUL_user_info>(design, "CameraInterface", "Medium, 10 taps of 8 bits");
}

} // namespace sample
