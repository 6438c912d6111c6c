// What hosts of every version are given, word by word.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/host_fixture.h"
#include "support/published_interface.h"

namespace pxk::test {
namespace {

using pxkhost::ClassRecord;
using pxkhost::Host;
using pxkhost::MethodRecord;
using pxkhost::ModuleRecord;
using pxkhost::PropertyRecord;
using pxkhost::Registration;
using pxkhost::Words;

struct Gate {
    double version;
    int controlVersion;
    bool modules;
};

constexpr Gate gates[] = {
    {0.0, 9, false},       {2010.0, 9, false},    {2010.0289, 9, false}, {2010.029, 9, false},   {2011.04, 9, false},
    {2011.9999, 9, false}, {2012.0, 10, false},   {2012.5, 10, false},   {2012.9999, 10, false}, {2013.0, 11, true},
    {2013.0299, 11, true}, {2013.03, 12, true},   {2013.0399, 12, true}, {2013.04, 13, true},    {2017.0, 13, true},
    {2019.03, 13, true},   {2999.9999, 13, true}, {3000.0, 13, false},   {3019.0, 13, false},
};

void PrintTo(const Gate& gate, std::ostream* stream) { *stream << gate.version; }

HostWord fixedFlags(const Gate& gate, HostWord flags) {
    if (flags & 0x40000 && gate.version >= 2010.029) flags |= 4;
    return flags & ~HostWord{0x40000};
}

bool oldLayouts(const Gate& gate) { return gate.controlVersion == 9; }

std::string extendedDeclaration(std::string_view declaration) {
    const std::size_t end = declaration.find_first_of(" (");
    const std::string name(declaration.substr(0, end));
    if (declaration[end] == ' ') return name + "(extends ref as Picture)" + std::string(declaration.substr(end));
    return name + "(extends ref as Picture, " + std::string(declaration.substr(end + 1));
}

class RegistrationAt : public pxktest::HostTest, public testing::WithParamInterface<Gate> {
  protected:
    void SetUp() override {
        pxkhost::Options options{.version = gate().version};
        if (gate().version == 0.0) options.missing = {"REALGetRBVersion"};
        open(options);
    }

    static const Gate& gate() { return GetParam(); }

    void expectMethod(const MethodRecord& method, std::size_t words, std::string_view declaration, HostWord flags,
                      bool hasSetter, bool deprecated) {
        SCOPED_TRACE(declaration);
        ASSERT_EQ(method.words.size(), words);
        EXPECT_NE(method.words[0], 0);
        EXPECT_EQ(method.words[1] != 0, hasSetter);
        EXPECT_EQ(reinterpret_cast<void*>(method.words[0]), method.function);
        EXPECT_EQ(reinterpret_cast<void*>(method.words[1]), method.setter);
        EXPECT_EQ(method.declaration, declaration);
        EXPECT_EQ(method.words[3], flags);
        if (words == 4) return;
        ASSERT_EQ(method.words[4], deprecated ? 1 : 0);
        EXPECT_EQ(method.words[5] != 0, deprecated);
        if (deprecated) {
            const auto expected = std::pair<std::string, std::string>("Deprecated", "\"PNG format\"");
            EXPECT_EQ(method.attributes.front(), expected);
        }
    }

    void expectProperty(const PropertyRecord& property, const PublishedProperty& published) {
        SCOPED_TRACE(published.name);
        ASSERT_EQ(property.words.size(), oldLayouts(gate()) ? 10U : 12U);
        EXPECT_EQ(property.words[0], 0) << "no group";
        EXPECT_EQ(property.name, published.name);
        EXPECT_EQ(property.type, published.type);
        EXPECT_EQ(property.words[3], fixedFlags(gate(), published.flags));
        EXPECT_EQ(property.isField(), published.isField);
        if (published.isField) {
            EXPECT_EQ(property.words[4], -1);
            EXPECT_EQ(property.words[5], -1);
        } else {
            EXPECT_NE(property.words[4], 0);
            EXPECT_NE(property.words[5], 0);
            EXPECT_EQ(property.words[6], 0);
        }
        for (std::size_t i = 7; i < property.words.size(); ++i) EXPECT_EQ(property.words[i], 0);
    }

    template <std::size_t count>
    void expectClass(const ClassRecord& record, std::string_view name, HostWord dataSize,
                     const std::array<PublishedProperty, count>& properties, HostWord methodFlags,
                     std::initializer_list<std::string_view> methods) {
        SCOPED_TRACE(name);
        const Words& words = record.words;
        ASSERT_EQ(words.size(), oldLayouts(gate()) ? 25U : 29U);
        EXPECT_EQ(words[0], gate().controlVersion);
        EXPECT_EQ(record.name, name);
        EXPECT_EQ(words[2], 0) << "no super class";
        EXPECT_EQ(words[3], dataSize);
        EXPECT_EQ(words[3] % 16, 0);
        EXPECT_NE(words[5], 0);
        EXPECT_NE(words[6], 0);
        EXPECT_EQ(words[8], static_cast<HostWord>(count));
        EXPECT_EQ(words[10], static_cast<HostWord>(methods.size()));
        for (std::size_t i = 11; i < 20; ++i) EXPECT_EQ(words[i], 0) << i;
        EXPECT_EQ(words[20], 4);
        for (std::size_t i = 21; i < words.size(); ++i) EXPECT_EQ(words[i], 0) << i;
        ASSERT_EQ(record.properties.size(), count);
        for (std::size_t i = 0; i < count; ++i) expectProperty(record.properties[i], properties[i]);
        ASSERT_EQ(record.methods.size(), methods.size());
        const std::size_t methodWords = oldLayouts(gate()) ? 4 : 6;
        for (std::size_t i = 0; i < methods.size(); ++i) {
            const std::string_view declaration = methods.begin()[i];
            expectMethod(record.methods[i], methodWords, declaration, fixedFlags(gate(), methodFlags),
                         declaration.starts_with("Table"), false);
        }
    }
};

TEST_P(RegistrationAt, DeclaresItsControlVersionOnce) {
    EXPECT_EQ(host().registry().declaredVersions(), std::vector{gate().controlVersion});
}

TEST_P(RegistrationAt, ComesInTheStatedOrder) {
    using Kind = Registration::Kind;
    std::vector<Kind> kinds = {Kind::classRecord, Kind::classRecord};
    if (gate().modules) {
        kinds.insert(kinds.end(), {Kind::module, Kind::module});
    } else {
        kinds.push_back(Kind::extension);
        kinds.insert(kinds.end(), publishedGlobalMethods.size(), Kind::globalMethod);
    }
    std::vector<Kind> actual;
    for (const Registration& each : host().registry().order()) actual.push_back(each.kind);
    EXPECT_EQ(actual, kinds);
}

TEST_P(RegistrationAt, GivesTheClasses) {
    const auto& classes = host().registry().classes();
    ASSERT_EQ(classes.size(), 2U);
    const bool is32Bit = sizeof(void*) == 4;
    // In 64 bits the two picture references take 8 bytes more; both sizes are rounded up to a multiple of 16.
    expectClass(classes[0], "PictureSepiaPXK", is32Bit ? 64 : 80, publishedSepiaProperties, 4,
                {"Close", "Run as boolean"});
    expectClass(classes[1], "PictureLut3DPXK", 140000, publishedLut3DProperties, 0x40000,
                {"Close", "Run as boolean", "Table(r as UInt32, g as UInt32, b as UInt32, x as UInt32) as double"});
    EXPECT_EQ(classes[0].methods[0].function, classes[0].destructor) << "Close is the destructor";
    EXPECT_EQ(classes[1].methods[0].function, classes[1].destructor);
}

TEST_P(RegistrationAt, GivesThePictureMethods) {
    const HostWord flags = fixedFlags(gate(), 0x40000);
    if (gate().modules) {
        EXPECT_TRUE(host().registry().extensions().empty());
        const ModuleRecord& module = host().registry().modules().at(0);
        EXPECT_EQ(module.name, "PicturePictureExtensionPXK");
        ASSERT_EQ(module.words.size(), 24U);
        EXPECT_EQ(module.words[0], gate().controlVersion);
        EXPECT_EQ(module.words[3], 41);
        for (std::size_t i = 4; i < 24; ++i) EXPECT_EQ(module.words[i], 0);
        auto method = module.methods.begin();
        for (const std::string_view declaration : publishedPictureMethods) {
            if (declaration == publishedPictureProperty) {
                expectMethod(*method++, 6,
                             "EmbeddedMaskPXK(extends ref as Picture, swap as boolean, assigns value as picture)",
                             flags | 0x10, false, false);
            }
            expectMethod(*method++, 6, extendedDeclaration(declaration), flags | 0x10, false, false);
        }
        EXPECT_EQ(method, module.methods.end());
    } else {
        ASSERT_EQ(host().registry().extensions().size(), 1U);
        const ClassRecord& extension = host().registry().extensions()[0];
        ASSERT_EQ(extension.words.size(), oldLayouts(gate()) ? 25U : 29U);
        EXPECT_EQ(extension.words[0], gate().controlVersion);
        EXPECT_EQ(extension.name, "Picture");
        for (std::size_t i = 2; i < extension.words.size(); ++i) {
            if (i == 9) continue;  // the methods, looked at below
            const HostWord expected = i == 10 ? 40 : i == 20 ? 4 : 0;
            EXPECT_EQ(extension.words[i], expected) << i;
        }
        ASSERT_EQ(extension.methods.size(), publishedPictureMethods.size());
        for (std::size_t i = 0; i < publishedPictureMethods.size(); ++i) {
            const std::string_view declaration = publishedPictureMethods[i];
            expectMethod(extension.methods[i], oldLayouts(gate()) ? 4 : 6, declaration, flags,
                         declaration == publishedPictureProperty, false);
        }
    }
}

TEST_P(RegistrationAt, GivesTheGlobalMethods) {
    HostWord flags = fixedFlags(gate(), 0x40000);
    if (gate().modules) {
        flags |= 0x10;
        ASSERT_EQ(host().registry().modules().size(), 2U);
        const ModuleRecord& module = host().registry().modules()[1];
        EXPECT_EQ(module.name, "PictureGlobalsPXK");
        ASSERT_EQ(module.words.size(), 24U);
        EXPECT_EQ(module.words[0], gate().controlVersion);
        EXPECT_EQ(module.words[3], 6);
        for (std::size_t i = 4; i < 24; ++i) EXPECT_EQ(module.words[i], 0);
        EXPECT_TRUE(host().registry().globalMethods().empty());
    } else {
        EXPECT_TRUE(host().registry().modules().empty());
        ASSERT_EQ(host().registry().globalMethods().size(), 6U);
    }
    for (std::size_t i = 0; i < publishedGlobalMethods.size(); ++i) {
        const MethodRecord& method =
            gate().modules ? host().registry().modules()[1].methods[i] : host().registry().globalMethods()[i];
        expectMethod(method, 6, publishedGlobalMethods[i], flags, false, i < deprecatedGlobalMethods);
    }
}

std::string gateName(const testing::TestParamInfo<Gate>& gate) {
    std::string name = "Host" + std::to_string(gate.param.version);
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(EveryGate, RegistrationAt, testing::ValuesIn(gates), gateName);

}  // namespace
}  // namespace pxk::test
