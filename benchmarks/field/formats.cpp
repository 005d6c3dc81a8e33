#include "format.h"

std::vector<std::unique_ptr<Format>> allFormats()
{
    std::vector<std::unique_ptr<Format>> formats;
    formats.push_back(classLibrary());
    formats.push_back(cInterface());
    formats.push_back(floorFormat());
    formats.push_back(protobuf());
    formats.push_back(protobufArena());
    formats.push_back(flatBuffers());
    formats.push_back(capnProto());
    formats.push_back(sqlite());
    formats.push_back(jsonText());
    return formats;
}
