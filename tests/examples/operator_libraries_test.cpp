#include "files.h"
#include "operators/operator.h"
#include "sample_design.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <memory>
#include <string>

namespace {

using examples::Operator;
using examples::Samples;
using testing::ElementsAre;

struct CloseLibrary {
    void operator()(void* library) const { dlclose(library); }
};

/// The libraries of the sample design, unpacked.
class OperatorLibraries : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(design.Load(SAMPLE_DESIGN), 0);
        ASSERT_EQ(design.saveLibs(directory.path(), zul_opsys_of_library(), ZUL_dll::replace), 0);
    }

    /// Makes the host's side of a module as the module itself says how.
    std::unique_ptr<Operator> make(char const* type, char const* instance)
    {
        std::string const file = directory / ("lib" + std::string(type) + ".dylib");
        libraries.emplace_back(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
        if (libraries.back() == nullptr) {
            ADD_FAILURE() << dlerror();
            return nullptr;
        }
        void* symbol = dlsym(libraries.back().get(), (std::string(type) + "QelLocalCreate").c_str());
        auto const factory = reinterpret_cast<examples::OperatorFactory>(symbol);
        return std::unique_ptr<Operator>(factory == nullptr ? nullptr : factory(instance));
    }

    ZUL design;
    TemporaryDirectory directory;
    std::vector<std::unique_ptr<void, CloseLibrary>> libraries; // closed after the operators are gone
};

TEST_F(OperatorLibraries, AreStoredCompressedForThisSystem)
{
    for (ZUL_dll const* each : sample::all<ZUL_dll>(design)) {
        EXPECT_TRUE(each->isCompressed()) << each->getName();
        EXPECT_EQ(each->getSystem(), zul_opsys_of_library()) << each->getName();
        auto const unpacked = readFile(directory / ("lib" + std::string(each->getName()) + ".dylib")).size();
        EXPECT_LT(each->getLibLength(), unpacked) << each->getName();
    }
}

TEST_F(OperatorLibraries, MakeAnOperatorForEveryModule)
{
    for (ZUL_module const* module : sample::all<ZUL_module>(design)) {
        auto const made = make(module->getType(), module->getInstance());
        ASSERT_NE(made, nullptr) << module->getInstance();
        std::string const instance = module->getInstance();
        EXPECT_EQ(instance.find(made->kind()), 0U) << instance;
    }
}

TEST_F(OperatorLibraries, AnswerNullForWhatTheyDoNotHave)
{
    EXPECT_EQ(make("ImageOperators", "Trigger0"), nullptr) << "is one of the other library";
    EXPECT_EQ(make("SignalOperators", ""), nullptr);
    EXPECT_EQ(make("SignalOperators", nullptr), nullptr);
}

TEST_F(OperatorLibraries, FilterSmoothsAlongTheLine)
{
    auto const fir = make("ImageOperators", "Fir0");
    EXPECT_THAT(fir->run({0, 0, 16, 0, 0}), ElementsAre(1, 4, 6, 4, 1));
    EXPECT_THAT(fir->run({10, 10, 10}), ElementsAre(10, 10, 10)) << "the ends go on beyond the line";
    EXPECT_TRUE(fir->set("Gain", 2));
    EXPECT_THAT(fir->run({10, 10, 0xFFFF}), ElementsAre(8211, 40973, 0xFFFF));
}

TEST_F(OperatorLibraries, ImagePipelineComputes)
{
    EXPECT_THAT(make("ImageOperators", "Sampler1")->run({1, 2, 3, 4, 5}), ElementsAre(1, 3, 5));
    auto const lut = make("ImageOperators", "Lut0");
    EXPECT_TRUE(lut->set("Gamma", 0.5));
    EXPECT_THAT(lut->run({0, 0x8000, 0xFFFF}), ElementsAre(0, 0x4000, 0xFFFF));
    auto const camera = make("ImageOperators", "Camera0");
    EXPECT_TRUE(camera->set("Width", 2));
    EXPECT_THAT(camera->run({7, 8, 9}), ElementsAre(7, 8));
}

TEST_F(OperatorLibraries, SignalsAreCountedDividedAndStretched)
{
    Samples const edges{1, 0, 1, 1, 0, 1};
    EXPECT_THAT(make("SignalOperators", "Encoder0")->run(edges), ElementsAre(1, 1, 2, 2, 2, 3));
    auto const trigger = make("SignalOperators", "Trigger0");
    EXPECT_TRUE(trigger->set("Divider", 2));
    EXPECT_THAT(trigger->run(edges), ElementsAre(1, 0, 0, 0, 0, 1));
    auto const strobe = make("SignalOperators", "Strobe1");
    EXPECT_TRUE(strobe->set("PulseClocks", 2));
    EXPECT_THAT(strobe->run(edges), ElementsAre(1, 1, 1, 1, 0, 1));
}

TEST_F(OperatorLibraries, RefuseUnknownParametersAndValues)
{
    auto const trigger = make("SignalOperators", "Trigger0");
    EXPECT_FALSE(trigger->set("Multiplier", 2));
    EXPECT_FALSE(trigger->set("Divider", 0));
    EXPECT_THAT(trigger->run({1, 0, 1}), ElementsAre(1, 0, 1)) << "the divider is still 1";
}

} // namespace
