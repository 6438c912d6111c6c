/// Chains on a plugin that has a member of every kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ChainRun : public testing::Test {
  protected:
    ChainRun() { folder.writePicture("in.png", colourful(5, 3)); }

    CommandResult pxk(std::vector<std::string> arguments, const std::string& input = "") const {
        arguments.insert(arguments.begin(), {"--plugin", PXK_TRIAL_PLUGIN});
        return runTool(folder.path(), arguments, input);
    }

    CommandResult chain(const std::string& text) const { return pxk({"in.png", "-e", text}); }

    /// What a chain prints that is expected to succeed.
    std::string printed(const std::string& text) const {
        const CommandResult result = chain(text);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
        return result.out;
    }

    /// What a chain that is expected to fail says.
    std::string refused(const std::string& text, int exitCode) const {
        const CommandResult result = pxk({"in.png", "-e", text, "-o", "no.png"});
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_EQ(result.out, "");
        EXPECT_FALSE(folder.has("no.png"));
        return result.error;
    }

    PictureFolder folder;
};

// ---- values

TEST_F(ChainRun, PrintsANumberABooleanAndAText) {
    EXPECT_EQ(printed("SumPXK(1, 2.25)"), "3.25\n");
    EXPECT_EQ(printed("SumPXK(1, 2)"), "3\n");
    EXPECT_EQ(printed("SumPXK(-1)"), "-0.5\n");
    EXPECT_EQ(printed("BitsPXK(&c00FF10)"), "65296\n");
    EXPECT_EQ(printed("IsPXK(true)"), "true\n");
    EXPECT_EQ(printed("IsPXK(FALSE)"), "false\n");
    EXPECT_EQ(printed("EchoPXK(\"caf\xC3\xA9, \"\"so\"\"\")"), "caf\xC3\xA9, \"so\"\n");
}

TEST_F(ChainRun, FindsNamesInAnyLetterCaseWithOrWithoutTheirSuffix) {
    EXPECT_EQ(printed("sum(1, 1.0)"), "2\n");
    EXPECT_EQ(printed("SUMpxk(1, 1.0)"), "2\n");
    EXPECT_EQ(printed("pic.Same.sum(1)"), "1.5\n");
}

TEST_F(ChainRun, TurnsIntegersIntoDoublesAndColoursIntoIntegers) {
    EXPECT_EQ(printed("Sum(&h10, 1)"), "17\n");
    EXPECT_EQ(printed("Bits(255)"), "255\n");
    EXPECT_EQ(printed("Sum(&c000010, 1)"), "17\n");
}

TEST_F(ChainRun, PrintsWhatIsWrittenBackUnderTheUsersNames) {
    EXPECT_EQ(printed("Halves(7, a, b)"), "true\na = 3\nb = 4\n");
    EXPECT_EQ(printed("Halves(7, 0, 0)"), "true\nlow = 3\nhigh = 4\n");
    EXPECT_EQ(printed("Measure(w, m)"), "w = 5\nm = 3 bytes\n");
}

TEST_F(ChainRun, PrintsJsonOnOneLine) {
    const CommandResult result = pxk({"in.png", "-e", "Halves(7, a, b)", "--json"});
    EXPECT_EQ(result.out, "{\"file\":\"in.png\",\"result\":true,\"variables\":{\"a\":3,\"b\":4}}\n");
    const CommandResult bytes = pxk({"in.png", "-e", "Measure(w, m)", "--json"});
    EXPECT_EQ(bytes.out, "{\"file\":\"in.png\",\"variables\":{\"w\":5,\"m\":[0,0,0]}}\n");
    const CommandResult picture = pxk({"in.png", "-e", "Same", "--json", "-o", "out.png"});
    EXPECT_EQ(picture.out, "{\"file\":\"in.png\",\"output\":\"out.png\",\"width\":5,\"height\":3}\n");
    const CommandResult failure = pxk({"in.png", "-e", "Nothing", "--json", "-o", "out2.png"});
    EXPECT_EQ(failure.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(failure.out).at("error"), "NothingPXK: returned nil instead of a picture");
    const CommandResult binary = pxk({"in.png", "-e", "Binary", "--json"});
    EXPECT_EQ(binary.out, "{\"file\":\"in.png\",\"result\":[0,1,2,255]}\n");
}

TEST_F(ChainRun, PrintsOneLineForEachOfSeveralInputs) {
    folder.writePicture("b.png", colourful(2, 2));
    const CommandResult values = pxk({"in.png", "b.png", "-e", "Measure(w, m)"});
    EXPECT_EQ(values.out, "in.png: w = 5, m = 3 bytes\nb.png: w = 2, m = 3 bytes\n");
    EXPECT_EQ(values.error, "");
    const CommandResult json = pxk({"in.png", "b.png", "-e", "Sum(1)", "--json"});
    EXPECT_EQ(json.out, "{\"file\":\"in.png\",\"result\":1.5}\n{\"file\":\"b.png\",\"result\":1.5}\n");
}

TEST_F(ChainRun, KeepsBytesOffStandardOutput) {
    const CommandResult string = chain("Binary");
    EXPECT_EQ(string.exitCode, 1);
    EXPECT_EQ(string.out, "");
    EXPECT_EQ(string.error,
              "pxk: in.png: the chain ends in 4 bytes that are not text; say where they go with -o FILE\n");
}

TEST_F(ChainRun, WritesAStringOrMemoryBlockToTheFileNamed) {
    EXPECT_EQ(pxk({"in.png", "-e", "Binary", "-o", "out.bin"}).exitCode, 0);
    EXPECT_EQ(folder.readText("out.bin"), std::string("\0\1\2\xFF", 4));
    EXPECT_EQ(pxk({"in.png", "-e", "Block(6)", "-o", "out.bin"}).exitCode, 0);
    EXPECT_EQ(folder.readText("out.bin"), std::string(6, '\0'));
    EXPECT_EQ(pxk({"in.png", "-e", "Echo(\"hello\")", "-o", "new/"}).exitCode, 0);
    EXPECT_EQ(folder.readText("new/in.png"), "hello");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"in.png", "new", "out.bin"}));
}

// ---- pictures as arguments

TEST_F(ChainRun, ReadsPictureArgumentsFromFiles) {
    folder.writePicture("other one.png", colourful(4, 4));
    EXPECT_EQ(pxk({"in.png", "-e", "Other(\"other one.png\")", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(4, 4));
    EXPECT_EQ(pxk({"in.png", "-e", "Other(pic)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    EXPECT_EQ(pxk({"in.png", "-e", "Other(pic.Other(\"other one.png\").Same)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(4, 4));
    EXPECT_EQ(refused("Other(nil)", 1),
              "pxk: in.png: OtherPXK: returned nil instead of a picture: pic is nil; give a picture\n");
}

TEST_F(ChainRun, NamesAPictureArgumentThatCannotBeRead) {
    const std::string message = refused("Other(\"missing.png\")", 1);
    EXPECT_THAT(message, StartsWith("pxk: in.png: OtherPXK: "));
    EXPECT_THAT(message, HasSubstr("missing.png"));
}

TEST_F(ChainRun, ReadsMemoryBlockArgumentsFromFiles) {
    folder.writeText("table.bin", std::string(256, 'x'));
    EXPECT_EQ(printed("BlockSize(\"table.bin\")"), "256\n");
    EXPECT_EQ(printed("BlockSize(nil)"), "-1\n");
    folder.writeText("empty.bin", "");
    EXPECT_EQ(printed("BlockSize(\"empty.bin\")"), "0\n");
    EXPECT_EQ(refused("BlockSize(\"none.bin\")", 1),
              "pxk: in.png: BlockSizePXK: cannot read \"none.bin\": No such file or directory\n");
}

// ---- global methods

TEST_F(ChainRun, GivesAGlobalMethodTheCurrentPictureWhenOneArgumentIsMissing) {
    folder.writePicture("other.png", colourful(4, 4));
    EXPECT_EQ(pxk({"in.png", "-e", "Tone(&cFFFFFF)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    EXPECT_EQ(pxk({"in.png", "-e", "Pair(\"other.png\")", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(4, 4));
    EXPECT_EQ(pxk({"in.png", "-e", "Pair(\"other.png\", pic)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    EXPECT_EQ(pxk({"in.png", "-e", "Pair(\"in.png\", \"other.png\").Tone(&c000000)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(4, 4));
    EXPECT_EQ(printed("Answer"), "42\n");
}

TEST_F(ChainRun, NeedsNoInputWhenTheChainMakesItsOwnPicture) {
    EXPECT_EQ(pxk({"-e", "Answer"}).out, "42\n");
    EXPECT_EQ(pxk({"-e", "Pair(\"in.png\", \"in.png\").Same", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    const CommandResult result = pxk({"-e", "Same", "-o", "out2.png"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.error, HasSubstr("there is no picture to work on yet; name an input file"));
}

// ---- classes

TEST_F(ChainRun, RunsAClassAsAStep) {
    EXPECT_EQ(pxk({"in.png", "-e", "PictureCopierPXK(Times = 3, Ratio = 1).Same", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    EXPECT_EQ(pxk({"in.png", "-e", "picturecopier", "-o", "out2.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out2.png"), colourful(5, 3));
    EXPECT_EQ(pxk({"in.png", "-e", "PictureCopier(Table(1) = 5)", "-o", "out3.png"}).exitCode, 0);
}

TEST_F(ChainRun, SetsThePropertiesBeforeItRuns) {
    EXPECT_EQ(refused("PictureCopier(Times = -1)", 1), "pxk: in.png: PictureCopierPXK: Run returned false\n");
    EXPECT_EQ(refused("PictureCopier(Ratio = 0)", 1),
              "pxk: in.png: PictureCopierPXK: Run left nil in DestinationPicture\n");
    EXPECT_EQ(refused("PictureCopier(Table(1) = 1000)", 1),
              "pxk: in.png: PictureCopierPXK: Run left nil in DestinationPicture\n");
}

TEST_F(ChainRun, RefusesPropertiesThatTheClassHasNot) {
    EXPECT_EQ(refused("PictureCopier(Tims = 3)", 2),
              "pxk: the chain, column 15: PictureCopierPXK has no property Tims; its properties are SourcePicture, "
              "DestinationPicture, Times, Ratio\n"
              "  PictureCopier(Tims = 3)\n"
              "                ^\n");
    EXPECT_EQ(
        refused("PictureCopier(DestinationPicture = \"in.png\")", 2),
        "pxk: the chain, column 15: DestinationPicture is what Run makes, and what the step returns; leave it out\n"
        "  PictureCopier(DestinationPicture = \"in.png\")\n"
        "                ^\n");
    EXPECT_THAT(refused("PictureCopier(3)", 2), HasSubstr("column 15: PictureCopierPXK takes its properties by name"));
    EXPECT_THAT(refused("PictureCopier(Times = 1.5)", 2),
                HasSubstr("column 23: expected \"Times as Integer\", not a double"));
    EXPECT_THAT(refused("PictureCopier(Table = 1)", 2), HasSubstr("column 15: Table takes one argument"));
    EXPECT_THAT(refused("Idle", 2),
                HasSubstr("column 1: IdlePXK cannot be a step of a chain: it has no SourcePicture"));
}

// ---- assignments and statements

TEST_F(ChainRun, AssignsToAPropertyOfThePicture) {
    EXPECT_EQ(printed("Level(2) = 7\nLevel(2)"), "7\n");
    EXPECT_EQ(printed("pic.Level(1) = &hFF\npic.Level(1)"), "255\n");
    EXPECT_EQ(pxk({"in.png", "-e", "Level(2) = 7", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
    EXPECT_THAT(refused("Same = 7", 2), HasSubstr("column 1: SamePXK cannot be assigned to"));
    EXPECT_THAT(refused("Level(2) = 7.5", 2), HasSubstr("column 12: expected \"value as integer\", not a double"));
}

TEST_F(ChainRun, TakesAChainInSeveralPieces) {
    EXPECT_EQ(pxk({"in.png", "-e", "Level(3) = 1", "-e", "Level(3)"}).out, "1\n");
}

TEST_F(ChainRun, ReadsAChainFromAFile) {
    folder.writeText("chain.txt", "' sums\npic.Same   // stays\n  .Sum(1, _\n 2)\nREM the end\n");
    EXPECT_EQ(pxk({"in.png", "-f", "chain.txt"}).out, "3\n");
    EXPECT_EQ(pxk({"in.png", "-f", "-"}, "Sum(2)").out, "2.5\n");
    folder.writeText("marked.txt", "\xEF\xBB\xBFSum(1, 2)");
    EXPECT_EQ(pxk({"in.png", "-f", "marked.txt"}).out, "3\n");
    folder.writeText("marked.txt", "\xEF\xBB\xBFSum(1 2)");
    EXPECT_THAT(pxk({"in.png", "-f", "marked.txt"}).error, HasSubstr("column 7: "));
    folder.writeText("bad.txt", "Same\nSum(1\n");
    const CommandResult bad = pxk({"in.png", "-f", "bad.txt"});
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_THAT(bad.error, StartsWith("pxk: bad.txt, line 3, column 1: expected \",\" or \")\"\n"));
    const CommandResult missing = pxk({"in.png", "-f", "none.txt"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.error, "pxk: cannot read \"none.txt\": No such file or directory\n");
}

TEST_F(ChainRun, KeepsThePictureThatAMethodChangedAndPrintsItsResult) {
    const CommandResult result = pxk({"in.png", "-e", "Is(true)", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "true\n");
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
}

TEST_F(ChainRun, TakesFalseForAFailureWhereMoreIsToFollow) {
    EXPECT_EQ(refused("Is(false)\nSame", 1), "pxk: in.png: step 1, IsPXK returned false\n");
    EXPECT_EQ(refused("Is(false)", 1), "pxk: in.png: IsPXK returned false, so nothing was written to no.png\n");
    EXPECT_EQ(printed("Is(true)\nIs(false)"), "false\n");
}

// ---- failures

TEST_F(ChainRun, NamesTheMemberThatReturnedNil) {
    EXPECT_EQ(refused("Nothing", 1), "pxk: in.png: NothingPXK: returned nil instead of a picture\n");
    EXPECT_EQ(refused("Same.Nothing.Same", 1), "pxk: in.png: step 2, NothingPXK: returned nil instead of a picture\n");
}

TEST_F(ChainRun, TellsWhatAMemberRaised) {
    EXPECT_EQ(refused("Raise(\"red memoryblock is nil\")", 1),
              "pxk: in.png: RaisePXK: NilObjectException: red memoryblock is nil\n");
}

TEST_F(ChainRun, SuggestsTheNameThatWasMeant) {
    const std::string message = refused("Same.Smae", 2);
    EXPECT_THAT(message, StartsWith("pxk: the chain, column 6: "));
    EXPECT_THAT(message, HasSubstr("SamePXK"));
    EXPECT_THAT(message, HasSubstr("\n  Same.Smae\n       ^\n"));
}

TEST_F(ChainRun, SuggestsNamesThatTheLettersAreIn) {
    EXPECT_THAT(refused("Copier", 2), HasSubstr("did you mean PictureCopierPXK?"));
    EXPECT_THAT(refused("Bloc", 2), HasSubstr("did you mean BlockPXK?"));
    EXPECT_THAT(refused("Zebracrossing", 2), Not(HasSubstr("did you mean")));
}

TEST_F(ChainRun, RefusesArgumentsThatFitNoForm) {
    EXPECT_THAT(refused("Sum", 2), HasSubstr("column 1: no form of SumPXK takes no arguments; its form is "
                                             "SumPXK(a as integer, b as double = 0.5) as double\n"));
    EXPECT_THAT(refused("Sum(1, 2, 3)", 2), HasSubstr("no form of SumPXK takes 3 arguments"));
    EXPECT_THAT(refused("Sum(1.5)", 2), HasSubstr("column 5: expected \"a as integer\", not a double"));
    EXPECT_THAT(refused("Sum(1, true)", 2), HasSubstr("column 8: expected \"b as double\", not a boolean"));
    EXPECT_THAT(refused("Sum(nil)", 2), HasSubstr("expected \"a as integer\", not nil"));
    EXPECT_THAT(refused("Sum(x)", 2),
                HasSubstr("not the name x, which can only receive a value that a member writes back"));
    EXPECT_THAT(refused("Sum(pic)", 2), HasSubstr("expected \"a as integer\", not a picture"));
    EXPECT_THAT(refused("Other(3)", 2),
                HasSubstr("expected \"pic as picture\" (the name of a file in quotes), not an integer"));
    EXPECT_THAT(refused("Sum(a = 1)", 2), HasSubstr("SumPXK takes its arguments by position, not by name"));
}

TEST_F(ChainRun, TakesArgumentsFromCallsOnThePicture) { EXPECT_EQ(printed("Sum(pic.Bits(7), pic.Sum(1))"), "8.5\n"); }

TEST_F(ChainRun, RefusesACallOnAValue) {
    EXPECT_THAT(refused("Sum(1).Same", 2), HasSubstr("column 8: SumPXK returns a double, so no call can follow it"));
    EXPECT_THAT(refused("Other(pic.Sum(1).Same)", 2), HasSubstr("SumPXK returns a double, so no call can follow it"));
}

TEST_F(ChainRun, RefusesAClassMethodAsAStep) {
    EXPECT_THAT(refused("Run", 2), StartsWith("pxk: the chain, column 1: "));
    EXPECT_THAT(refused("Table(1)", 2), StartsWith("pxk: the chain, column 1: "));
}

TEST_F(ChainRun, BehavesTheSameAsADesktopApplication) {
    const CommandResult result = pxk({"--application", "desktop", "in.png", "-e", "Same", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(folder.readPicture("out.png"), colourful(5, 3));
}

// ---- accounting

TEST_F(ChainRun, ReportsALeakWhenThereIsNothingWorse) {
    const CommandResult result = pxk({"in.png", "-e", "Leak", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, testing::StartsWith("pxk: leaked: picture "));
    EXPECT_TRUE(folder.has("out.png"));
}

TEST_F(ChainRun, ReportsAFailureAndNotTheLeakThatCameWithIt) {
    EXPECT_EQ(refused("Leak.Nothing", 1), "pxk: in.png: step 2, NothingPXK: returned nil instead of a picture\n");
    const CommandResult unwritten = pxk({"in.png", "-e", "Leak", "-o", "gone/out.png"});
    EXPECT_EQ(unwritten.exitCode, 1);
    EXPECT_THAT(unwritten.error, HasSubstr("gone/out.png"));
    EXPECT_THAT(unwritten.error, testing::Not(HasSubstr("leaked")));
}

}  // namespace
}  // namespace pxk::tool
