// What the tool says to nonsense, and that it leaves nothing behind.
#include <ZrConvertersLib/Format.h>

#include <algorithm>
#include <regex>
#include <set>

#include "ToolRunner.h"

namespace {

struct Nonsense {
  std::string name;
  std::string words;
  int exitCode;
  std::vector<std::string> says;  // every one of these is in the sentence
};

void PrintTo(const Nonsense& nonsense, std::ostream* out) {
  *out << nonsense.words;
}

class NonsenseTest : public ToolTest, public testing::WithParamInterface<Nonsense> {};

TEST_P(NonsenseTest, GetsOneSentenceAndLeavesNoFile) {
  Write("in.raw", std::vector<std::uint8_t>(64 * 48));
  const ToolRun run = Run(GetParam().words);
  EXPECT_EQ(run.exitCode, GetParam().exitCode) << run.errors;
  EXPECT_EQ(run.errors.find("zrconvert: "), 0U) << run.errors;
  EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1) << run.errors;
  EXPECT_EQ(run.output, "");
  for (const std::string& word : GetParam().says)
    EXPECT_NE(run.errors.find(word), std::string::npos) << run.errors;
  EXPECT_EQ(FilesLeft(), std::vector<std::string>{"in.raw"});
}

// Words of a right conversion of in.raw, which holds 64x48 bytes.
const std::string cRight = "convert in.raw out.png -f Mono8 -s 64x48 ";

const std::vector<Nonsense> cNonsense{
    {"NoCommand", "", 2, {"convert", "chart"}},
    {"UnknownCommand", "transmogrify in.raw out.png", 2, {"transmogrify", "convert", "chart"}},
    {"MistypedCommand", "covnert in.raw out.png", 2, {"covnert", "did you mean convert?"}},
    {"NoFrames", cRight + "--frames 0", 2, {"--frames", "1 or more", "'0'"}},
    {"BlackAboveWhite", cRight + "--black 300 -t RGB8", 2, {"--black", "--white"}},
    {"MosaicOfOneColumn", "convert in.raw out.png -f Bayer8 -s 1x48", 2, {"2 x 2"}},
    {"UnknownMatrixOfCode", "convert in.raw out.png -f 0x021000FA -s 4x4", 2, {"BT.2020"}},
    {"UnknownOption", cRight + "--sharpen", 2, {"--sharpen"}},
    {"NoFormat", "convert in.raw out.png -s 64x48", 2, {"--format"}},
    {"NoSize", "convert in.raw out.png -f Mono8", 2, {"--size"}},
    {"NoOutput", "convert in.raw -f Mono8 -s 64x48", 2, {"IN... OUT"}},
    {"UnknownFormat", "convert in.raw out.png -f Mono12q -s 64x48", 2, {"Mono12q", "Mono12p"}},
    {"UnknownFormatFarFromAll",
     "convert in.raw out.png -f Sepia -s 64x48",
     2,
     {"Sepia", "zrconvert formats"}},
    {"UnknownCode", "convert in.raw out.png -f 0x01080FFF -s 64x48", 2, {"0x01080FFF"}},
    {"UnknownTarget", cRight + "-t RGB9", 2, {"RGB9", "RGB8"}},
    {"NoConverterFrom", "convert in.raw out.raw -f SCF18 -s 64x48 -t BiColor8", 2, {"SCF18", "BiColor8"}},
    {"NoConverterTo", cRight + "-t Bayer8", 2, {"no converter", "Mono8", "Bayer8", "RGB565p"}},
    {"SizeWithoutX", "convert in.raw out.png -f Mono8 -s 640", 2, {"640", "WIDTHxHEIGHT"}},
    {"ZeroHeight", "chart out.raw -f Mono8 -s 64x0", 2, {"64x0", "no pixels"}},
    {"AbsurdSize", "convert in.raw out.png -f Mono8 -s 4000000000x4000000000", 2, {"4000000000x4000000000"}},
    {"TooShort", "convert in.raw out.png -f Mono8 -s 64x49", 1, {"3072", "3136"}},
    {"TooShortForItsPadding", cRight + "--src-padding 1", 1, {"3072", "3119"}},
    {"MissingInput", "convert none.raw out.png -f Mono8 -s 64x48", 1, {"none.raw", "No such file"}},
    {"InputIsFolder", "convert . out.png -f Mono8 -s 64x48", 1, {"directory"}},
    {"NoSuchFolder", "convert in.raw none/out.png -f Mono8 -s 64x48", 1, {"none/out.png", "No such file"}},
    {"OutputIsFolder", "convert in.raw . -f Mono8 -s 64x48 -c png", 1, {"directory"}},
    {"NoEnding", "convert in.raw out -f Mono8 -s 64x48", 2, {"out", "--container"}},
    {"UnknownEnding", "convert in.raw out.jpg -f Mono8 -s 64x48", 2, {"out.jpg", "--container"}},
    {"StdoutWithoutContainer", "convert in.raw - -f Mono8 -s 64x48", 2, {"standard output", "--container"}},
    {"OddWidth422", "convert in.raw out.png -f YCbCr422_8 -s 63x2", 2, {"YCbCr422_8", "multiple of 2", "63"}},
    {"OddWidth422Chart", "chart out.raw -f YCbCr422_10p -s 63x2", 2, {"YCbCr422_10p", "multiple of 2"}},
    {"Width411", "convert in.raw out.png -f YCbCr411_8 -s 62x2", 2, {"YCbCr411_8", "multiple of 4", "62"}},
    {"GreyMapOfColour", cRight + "-t RGB8 -c pgm", 2, {".pgm", "RGB8"}},
    {"PixelMapOfGrey", cRight + "-t Mono8 -c ppm", 2, {".ppm", "Mono8"}},
    {"OffsetOnGrey", cRight + "-t Mono16 --offset 2", 2, {"8-bit colour", "Mono16"}},
    {"MatrixOfTwo", cRight + "--color-matrix 1,2", 2, {"1,2", "nine"}},
    {"MeasureNothing", "info in.raw --measure", 2, {"--format", "--size"}},
    {"GammaOfZero", cRight + "--gamma 0", 2, {"--gamma", "above 0"}},
    {"CurveThatTurnsBack", cRight + "--curve 0:0,0.5:1,0.5:0", 2, {"--curve", "rising"}},
    {"GainBelowZero", cRight + "--gain 1,-1,1", 2, {"--gain", "0 or more"}},
    {"OffsetOfWords", cRight + "--offset x", 2, {"--offset", "RED,GREEN,BLUE"}},
    {"GainOfTwo", cRight + "--gain 1,2", 2, {"1,2", "RED,GREEN,BLUE"}},
    {"RegionOutside", cRight + "--region 60,0,5,5", 2, {"region", "64x48"}},
    {"UnknownPattern", cRight + "--pattern RGBB", 2, {"RGBB", "RGGB"}},
    {"UnknownMatrix", cRight + "--matrix 2020", 2, {"2020", "709"}},
    {"PatternAgainstCode", "convert in.raw out.png -f BayerRG8 -p BGGR -s 64x48", 2, {"BayerRG8", "pattern"}},
    {"UnknownDemosaic", cRight + "--demosaic magic", 2, {"magic", "interpolate"}},
    {"ThreadsOfWords", cRight + "-j many", 2, {"--threads", "0 to 256", "many"}},
    {"TooManyThreads", cRight + "-j 100000", 2, {"--threads", "0 to 256", "100000"}},
    {"SkipOfWords", cRight + "--skip -1", 2, {"--skip", "0 or more"}},
    {"PaddingOfWords", cRight + "--src-padding x", 2, {"--src-padding", "0 to"}},
    {"PngLevel", cRight + "--png-level 10", 2, {"--png-level", "0 to 9"}},
    {"StrideTooSmall", cRight + "--stride 63", 2, {"--stride", "63", "64"}},
    {"StrideAndPadding", cRight + "--stride 64 --src-padding 1", 2, {"--stride", "padding"}},
    {"PatternOfGrey", cRight + "-p RGGB", 2, {"--pattern", "no meaning", "Mono8"}},
    {"MatrixOfGrey", cRight + "-m 709", 2, {"--matrix", "Mono8"}},
    {"DemosaicOfGrey", cRight + "-d fast", 2, {"--demosaic", "Mono8"}},
    {"PatternOfGreyChart", "chart x.raw -f Mono8 -s 64x48 -p RGGB", 2, {"--pattern", "Mono8"}},
    {"WrongPatternOfPicture",
     "convert in.raw x.raw -f BayerRG12p -t BayerBG8 -s 64x32",
     2,
     {"BayerBG8", "RGGB"}},
    {"WrongMatrixOfPicture",
     "convert in.raw x.raw -f YCbCr601_422_10p -t YCbCr709_422_8 -s 64x19",
     2,
     {"YCbCr709_422_8", "matrix"}},
    {"PackingOfPlainSamples", cRight + "--packing csi2", 2, {"--packing csi2", "no meaning", "Mono8"}},
    {"PackingOfOtherFormat",
     "convert in.raw x.png -f pRAA --packing gige-vision -s 64x32",
     2,
     {"gige-vision", "Bayer10p"}},
    {"UnknownPacking", cRight + "--packing mipi", 2, {"mipi", "csi2"}},
    {"Csi2OfHalfAGroup", "chart x.raw -f Y10P -s 66x2", 2, {"Mono10p csi2", "multiple of 4", "66"}},
    {"DeepBmp", "convert in.raw x.bmp -f Mono16 -t RGB16 -s 64x24", 2, {".bmp", "RGB16", "8 bits"}},
    {"WidePng", "convert in.raw x.png -f Mono8 -s 1048576x1", 2, {".png", "1000000 pixels a side"}},
    {"SkippedAll", cRight + "--skip 1", 1, {"skipped"}},
    {"WrongNumber", "convert in.raw %s.png -f Mono8 -s 64x48", 2, {"%s.png"}},
    {"InfoOfNothing", "info none.raw", 1, {"none.raw"}},
};

INSTANTIATE_TEST_SUITE_P(Tool, NonsenseTest, testing::ValuesIn(cNonsense),
                         [](const auto& test) { return test.param.name; });

class CommandLineTest : public ToolTest {};

TEST_F(CommandLineTest, HelpAndVersionGoToStandardOutput) {
  EXPECT_NE(RunWell("--help").find("chart"), std::string::npos);
  EXPECT_NE(RunWell("convert --help").find("--pattern"), std::string::npos);
  EXPECT_EQ(RunWell("--version").find("zrconvert 7.5"), 0U);
}

TEST_F(CommandLineTest, FormatsTellIdSizesLayoutAndCodes) {
  const std::string list = RunWell("formats");
  for (const char* word : {"Bayer12p", "1031", "0x407", "BayerRG12p 0x010C0059", "YCbCr411_8_CbYYCrYY",
                           "PFNC (packing gige-vision): Mono12Packed 0x010C0006", "SRGGB10P pRAA",
                           "Y10 'Y10 '", "packing csi2: 4 pixels in 5 bytes: high 8 bits of each sample"}) {
    EXPECT_NE(list.find(word), std::string::npos) << word;
  }
}

TEST_F(CommandLineTest, FormatsAsJsonAndAsNames) {
  const std::string json = RunWell("formats --json");
  EXPECT_NE(json.find("{\"name\": \"BayerRG12p\", \"code\": \"0x010C0059\", \"packing\": \"type\"}"),
            std::string::npos);
  EXPECT_NE(json.find("{\"name\": \"Y10P\", \"fourcc\": \"Y10P\", \"packing\": \"csi2\"}"),
            std::string::npos);
  Write("formats.json", {json.begin(), json.end()});
  const std::string names = RunWell("formats --names");
  for (const char* name : {"\nBayer12p\n", "\nBayerRG12p\n", "\nYCbCr709_422_8\n", "\nSRGGB10P\n"})
    EXPECT_NE(names.find(name), std::string::npos) << name;
  const ToolRun count = Shell("python3 -c 'import json; print(len(json.load(open(\"formats.json\"))))'");
  if (count.exitCode == 127) GTEST_SKIP() << "no Python here to read it";
  EXPECT_EQ(std::stoul(count.output), ZrConvertersLib::Formats().size()) << count.errors;
}

TEST_F(CommandLineTest, CompletionKnowsEveryName) {
  const ToolRun run = Shell("bash -c 'PATH=${TOOL%/*}:$PATH; . " ZRCONVERT_SOURCE
                            "/zrconvert.bash; COMP_WORDS=(zrconvert convert -f bayerRG1); COMP_CWORD=3; "
                            "_zrconvert; echo ${COMPREPLY[@]}'");
  EXPECT_NE(run.output.find("BayerRG12p "), std::string::npos) << run.output << run.errors;
}

TEST_F(CommandLineTest, WordsHaveOtherSpellings) {
  RunWell("chart a.raw -f BayerRG12p -s 64x48");
  RunWell("chart b.raw -f bayerrg12P -s 64x48");
  EXPECT_EQ(Read("a.raw"), Read("b.raw"));
  RunWell("convert a.raw a.ppm -f BayerRG12p -s 64x48 --flip");
  RunWell("convert a.raw b.PNM -f BAYERRG12P -s 64x48 --flip-vertical");
  EXPECT_EQ(Read("a.ppm"), Read("b.PNM"));
  RunWell("chart grey.raw -f Mono8 -s 64x48");
  RunWell("convert grey.raw grey.pnm -f mono8 -s 64x48");
  RunWell("convert grey.raw grey.pgm -f mono8 -s 64x48");
  EXPECT_EQ(Read("grey.pnm"), Read("grey.pgm"));
}

TEST_F(CommandLineTest, PairsOfOneFormat) {
  const std::string pairs = RunWell("pairs Mono8");
  EXPECT_NE(pairs.find("Mono8 -> RGB8\n"), std::string::npos);
  EXPECT_NE(pairs.find("Mono12p -> Mono8\n"), std::string::npos);
  EXPECT_EQ(pairs.find("Mono12p -> RGB8\n"), std::string::npos);
}

TEST_F(CommandLineTest, CurveGoesThroughItsPoints) {
  RunWell("chart in.raw -f Mono8 -s 64x48");
  RunWell("convert in.raw out.raw -f Mono8 -s 64x48 --curve 0:1,0.5:0.5,1:0");
  std::vector<std::uint8_t> expected = Read("in.raw");
  for (std::uint8_t& sample : expected) sample = static_cast<std::uint8_t>(255 - sample);
  EXPECT_EQ(Read("out.raw"), expected);
}

TEST_F(CommandLineTest, InfoFindsSizeAndFormat) {
  RunWell("chart frame.raw -f Mono12p -s 1280x1024");
  const std::string all = RunWell("info frame.raw");
  EXPECT_NE(all.find("1 x 1280x1024"), std::string::npos) << all;
  EXPECT_NE(all.find("Mono12p"), std::string::npos) << all;
  EXPECT_EQ(RunWell("--info frame.raw"), all);
  EXPECT_NE(RunWell("info frame.raw -f Mono8 -s 1280x768").find("2 x 1280x768  Mono8"), std::string::npos);
}

TEST_F(CommandLineTest, NameAndCodeSettlePattern) {
  RunWell("chart site.raw -f Bayer12p -p RGGB -s 64x48");
  RunWell("chart name.raw -f BayerRG12p -s 64x48");
  RunWell("chart code.raw -f 0x010C0059 -s 64x48");
  EXPECT_EQ(Read("site.raw"), Read("name.raw"));
  EXPECT_EQ(Read("site.raw"), Read("code.raw"));
  RunWell("convert site.raw a.raw -f Bayer12p -p RGGB -s 64x48");
  RunWell("convert site.raw b.raw -f 0x010C0059 -s 64x48");
  RunWell("convert site.raw c.raw -f Bayer12p -s 64x48");
  EXPECT_EQ(Read("a.raw"), Read("b.raw"));
  EXPECT_NE(Read("a.raw"), Read("c.raw"));
}

TEST_F(CommandLineTest, NamesOfThreeVocabulariesMeanTheSame) {
  const auto chart = [this](const std::string& words) {
    RunWell("chart x.raw -s 64x48 " + words);
    return Read("x.raw");
  };
  const auto csi2 = chart("-f Bayer10p -p RGGB --packing csi2");
  for (const char* name : {"pRAA", "SRGGB10P", "srggb10p", "0x41415270"})
    EXPECT_EQ(chart(std::string("-f ") + name), csi2) << name;
  EXPECT_NE(chart("-f pGAA"), chart("-f pgAA"));
  const auto gigEVision = chart("-f Bayer12Packed -p RGGB --packing gige-vision");
  EXPECT_EQ(chart("-f BayerRG12Packed"), gigEVision);
  EXPECT_EQ(chart("-f 0x010C002B"), gigEVision);
  EXPECT_EQ(chart("-f BayerRG12Packed --packing type"), chart("-f Bayer12Packed -p RGGB"));
  EXPECT_EQ(chart("-f Mono12Packed"), chart("-f Mono12Packed --packing gige-vision"));
  EXPECT_NE(chart("-f Mono12Packed"), chart("-f Mono12Packed --packing type"));
  EXPECT_EQ(chart("-f 'Y10 '"), chart("-f Mono10"));
  EXPECT_EQ(chart("-f Y10"), chart("-f Mono10"));
}

// What is left open is told with the option that says it.
TEST_F(CommandLineTest, NoteTellsWhichOrderOfLowBitsIsAssumed) {
  Write("in.raw", std::vector<std::uint8_t>(64 * 48 * 3 / 2));
  EXPECT_NE(Run("convert in.raw x.png -s 64x48 -f Mono12Packed").errors.find("--packing type"),
            std::string::npos);
  EXPECT_NE(
      Run("convert in.raw x.png -s 64x48 -f Bayer12Packed -p RGGB").errors.find("--packing gige-vision"),
      std::string::npos);
  EXPECT_EQ(Run("convert in.raw x.png -s 64x48 -f BayerRG12Packed").errors.find("--packing"),
            std::string::npos);
}

// The words that begin with a dash in the help of a command.
std::set<std::string> OptionsIn(const std::string& help) {
  static const std::regex cOption("(^|[ ,])(--?[a-zA-Z][a-z-]*)");
  std::set<std::string> options;
  for (std::sregex_iterator match(help.begin(), help.end(), cOption), end; match != end; ++match) {
    options.insert((*match)[2]);
  }
  return options;
}

TEST_F(CommandLineTest, ManPageAndCompletionKnowEveryOption) {
  const auto text = [](const char* name) {
    const std::vector<std::uint8_t> bytes = ReadFile(std::filesystem::path(ZRCONVERT_SOURCE) / name);
    std::string page(bytes.begin(), bytes.end());
    std::erase(page, '\\');
    return page;
  };
  const std::string page = text("zrconvert.1");
  const std::string completion = text("zrconvert.bash");
  for (const char* command : {"convert", "chart", "info", "formats", "pairs"}) {
    const std::set<std::string> options = OptionsIn(RunWell(std::string(command) + " --help"));
    EXPECT_TRUE(options.contains("--help"));
    for (const std::string& option : options) {
      EXPECT_NE(completion.find(option), std::string::npos) << option;
      EXPECT_TRUE(option == "-h" || option == "--help" || page.find(option) != std::string::npos) << option;
    }
  }
}

}  // namespace
