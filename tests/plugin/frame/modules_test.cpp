// Members as modules: declarations and records.
#include "frame/modules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/host_services.h"

namespace pxk {
namespace {

std::string extended(const char* declaration) { return AddClassParameter(declaration, "Picture").get(); }
std::string setter(const char* declaration) { return setterDeclaration(declaration, "Picture").get(); }

TEST(AddClassParameter, GivesADeclarationWithoutParametersAListOfItsOwn) {
    EXPECT_EQ(extended("HasMaskPXK as boolean"), "HasMaskPXK(extends ref as Picture) as boolean");
}

TEST(AddClassParameter, GoesInFrontOfTheOtherParameters) {
    EXPECT_EQ(extended("InvertPXK(left as integer,top as integer) as picture"),
              "InvertPXK(extends ref as Picture, left as integer,top as integer) as picture");
}

TEST(AddClassParameter, LeavesACommaBehindInAnEmptyList) {
    EXPECT_EQ(extended("Name() as picture"), "Name(extends ref as Picture, ) as picture");
}

TEST(AddClassParameter, TakesABareName) { EXPECT_EQ(extended("Close"), "Close(extends ref as Picture)"); }

TEST(AddClassParameter, StopsAt999Characters) {
    const std::string longName(2000, 'n');
    EXPECT_EQ(extended(longName.c_str()), std::string(999, 'n'));
}

TEST(AddClassParameter, HasNothingToSayAboutAnEmptyDeclaration) {
    EXPECT_EQ(AddClassParameter("", "Picture"), nullptr);
    EXPECT_EQ(AddClassParameter(nullptr, "Picture"), nullptr);
}

TEST(SetterDeclaration, AssignsTheResultType) {
    EXPECT_EQ(setter("EmbeddedMaskPXK(swap as boolean) as picture"),
              "EmbeddedMaskPXK(extends ref as Picture, swap as boolean, assigns value as picture)");
}

TEST(SetterDeclaration, WorksWithoutParameters) {
    EXPECT_EQ(setter("Level as integer"), "Level(extends ref as Picture, assigns value as integer)");
}

TEST(SetterDeclaration, StopsAt999Characters) {
    const std::string longDeclaration = "Name(" + std::string(2000, 'p') + ") as picture";
    EXPECT_EQ(setter(longDeclaration.c_str()).size(), 999U);
}

class Modules : public testing::Test {
  protected:
    // Modules are never freed, since a host keeps them: this test keeps them as well.
    static const REALmoduleDefinition* kept(const REALmoduleDefinition* module) {
        static auto* const modules = new std::vector<const REALmoduleDefinition*>;
        modules->push_back(module);
        return module;
    }

    static int function;
    static int setterFunction;
    static constexpr REALattribute attribute = {"Deprecated", "\"PNG format\""};
};
int Modules::function = 0;
int Modules::setterFunction = 0;

TEST_F(Modules, ExtensionPutsASetterInFrontOfItsGetter) {
    REALmethodDefinition methods[] = {
        {&function, nullptr, "First as boolean", 4},
        {&function, &setterFunction, "Second(swap as boolean) as picture", 8, 1, &attribute},
        {nullptr, &setterFunction, "Third as integer", 2},
    };
    REALclassDefinition extension = {.name = "Picture", .methods = methods, .methodCount = 3};
    const REALmoduleDefinition* module = kept(buildExtensionModule(extension, "Picture"));
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->version, 13);
    EXPECT_STREQ(module->name, "PicturePictureExtensionPXK");
    ASSERT_EQ(module->methodCount, 4);

    EXPECT_EQ(module->methods[0].function, &function);
    EXPECT_STREQ(module->methods[0].declaration, "First(extends ref as Picture) as boolean");
    EXPECT_EQ(module->methods[0].flags, 4 | 0x10);
    EXPECT_EQ(module->methods[0].attributeCount, 0);

    EXPECT_EQ(module->methods[1].function, &setterFunction);
    EXPECT_STREQ(module->methods[1].declaration,
                 "Second(extends ref as Picture, swap as boolean, assigns value as picture)");
    EXPECT_EQ(module->methods[1].flags, 8 | 0x10);
    EXPECT_EQ(module->methods[1].attributeCount, 1);
    EXPECT_EQ(module->methods[1].attributes, &attribute);

    EXPECT_EQ(module->methods[2].function, &function);
    EXPECT_STREQ(module->methods[2].declaration, "Second(extends ref as Picture, swap as boolean) as picture");

    EXPECT_EQ(module->methods[3].function, &setterFunction);
    EXPECT_STREQ(module->methods[3].declaration, "Third(extends ref as Picture, assigns value as integer)");
    for (int i = 0; i < 4; ++i) EXPECT_EQ(module->methods[i].setter, nullptr);
}

TEST_F(Modules, ExtensionIsGivenUpForAnEmptyDeclaration) {
    REALmethodDefinition methods[] = {{&function, nullptr, "First as boolean", 4}, {&function, nullptr, "", 4}};
    REALclassDefinition extension = {.name = "Picture", .methods = methods, .methodCount = 2};
    EXPECT_EQ(buildExtensionModule(extension, "Picture"), nullptr);
}

TEST_F(Modules, ExtensionNameStopsAt99Characters) {
    const std::string longName(150, 'n');
    REALmethodDefinition methods[] = {{&function, nullptr, "First as boolean", 4}};
    REALclassDefinition extension = {.name = longName.c_str(), .methods = methods, .methodCount = 1};
    EXPECT_EQ(kept(buildExtensionModule(extension, "Picture"))->name, std::string(99, 'n'));
}

TEST_F(Modules, GlobalsKeepTheirRecordsButForTheFlag) {
    const REALmethodDefinition methods[] = {
        {&function, nullptr, "One(p as picture) as picture", 4, 1, &attribute},
        {&setterFunction, nullptr, "Two(p as picture) as string", 6},
    };
    const REALmoduleDefinition* module = kept(buildGlobalsModule(methods, "Picture"));
    ASSERT_NE(module, nullptr);
    EXPECT_STREQ(module->name, "PictureGlobalsPXK");
    ASSERT_EQ(module->methodCount, 2);
    EXPECT_EQ(module->methods[0].function, &function);
    EXPECT_EQ(module->methods[0].declaration, methods[0].declaration);
    EXPECT_EQ(module->methods[0].flags, 4 | 0x10);
    EXPECT_EQ(module->methods[0].attributes, &attribute);
    EXPECT_EQ(module->methods[1].flags, 6 | 0x10);
    EXPECT_EQ(methods[0].flags, 4);
}

TEST_F(Modules, AreWhatHostsFrom2013ToBelow3000Take) {
    const double before = rbversion;
    for (const auto& [version, takes] :
         {std::pair{2012.9999, false}, {2013.0, true}, {2999.9999, true}, {3000.0, false}}) {
        rbversion = version;
        EXPECT_EQ(hostTakesModules(), takes) << version;
    }
    rbversion = before;
}

}  // namespace
}  // namespace pxk
