// The zelt tool, run as a user would: conversions equal the library call, every
// refusal names its problem, exits non-zero and leaves no output file behind.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/buffers.h"
#include "zelt/direct.h"
#include "zelt/rfc4175.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_v210.h"

namespace fs = std::filesystem;

namespace {

struct ToolRun {
  int exitCode;
  std::string err;
};

class Tool : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zelt-tool-test-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Path(const std::string& name) const { return (dir_ / name).string(); }

  ToolRun Zelt(const std::string& args) const {
    const std::string err = Path("stderr.txt");
    const std::string cmd = std::string("'") + ZELT_TOOL + "' " + args + " >'" + Path("stdout.txt") + "' 2>'" + err + "'";
    const int status = std::system(cmd.c_str());
    std::ifstream in(err);
    return {WEXITSTATUS(status), std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>())};
  }

  void Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    std::ofstream(Path(name), std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  }
  std::vector<uint8_t> Read(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

  // Nothing but the files the test made itself is left in the directory.
  bool OnlyInputsLeft(size_t inputs) const {
    size_t n = 0;
    for (const auto& e : fs::directory_iterator(dir_)) {
      const std::string f = e.path().filename().string();
      if (f != "stdout.txt" && f != "stderr.txt") ++n;
    }
    return n == inputs;
  }

  fs::path dir_;
};

TEST_F(Tool, ConvertsEveryFrameLikeTheLibrary) {
  const uint32_t w = 38, h = 6, frames = 3, stride = 2 * w;
  const std::vector<uint8_t> in = zelt::test::RandomBytes(size_t{stride} * h * frames, 4);
  Write("in.uyvy", in);
  const ToolRun r = Zelt("convert --from 2vuy --to YUY2 --size 38x6 --quiet " + Path("in.uyvy") + " " + Path("out.yuy2"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  std::vector<uint8_t> want(in.size());
  for (uint32_t f = 0; f < frames; ++f)
    cycbcr_uyvy_to_yuy2(want.data() + f * stride * h, in.data() + f * stride * h, w, h, stride, stride);
  EXPECT_EQ(Read("out.yuy2"), want);
}

TEST_F(Tool, JobsOfOtherFamiliesGiveTheLibrarysBytes) {
  const uint32_t w = 96, h = 4, pitch = 256;  // v210 rows of 96 pixels: 256 bytes
  struct Case {
    const char* args;
    size_t inBytes, outBytes;
    void (*direct)(uint8_t* out, uint8_t* in);
  } cases[] = {
      {"--from ARGB --to BGRA", size_t{w} * 4 * h, size_t{w} * 4 * h,
       [](uint8_t* out, uint8_t* in) {
         argb2bgra(reinterpret_cast<uint32_t*>(out), reinterpret_cast<const uint32_t*>(in), uint64_t{w} * h);
       }},
      {"--from v210 --to rfc4175", size_t{pitch} * h, size_t{w} * 20 / 8 * h,
       [](uint8_t* out, uint8_t* in) { zlt_v210_to_YCbCr10Packed(out, in, w, pitch, h, 0); }},
      {"--from yuv422p10 --to v210", size_t{w} * 4 * h, size_t{pitch} * h,
       [](uint8_t* out, uint8_t* in) {
         const auto* y = reinterpret_cast<const uint16_t*>(in);
         cycbcr_yuv422p10_to_012v(out, y, y + w * h, y + w * h + w / 2 * h, w, h, pitch, w * 2);
       }},
  };
  for (const Case& c : cases) {
    std::vector<uint8_t> in = zelt::test::RandomBytes(c.inBytes, 7);
    Write("in", in);
    const ToolRun r = Zelt(std::string("convert --quiet --size 96x4 ") + c.args + " " + Path("in") + " " + Path("out"));
    ASSERT_EQ(r.exitCode, 0) << c.args << ": " << r.err;
    std::vector<uint8_t> want(c.outBytes + 4096, 0);
    c.direct(want.data(), in.data());
    want.resize(c.outBytes);
    EXPECT_EQ(Read("out"), want) << c.args;
  }
}

TEST_F(Tool, PaddedStridesAreHonoured) {
  const uint32_t w = 10, h = 4;
  const std::vector<uint8_t> in = zelt::test::RandomBytes(32 * h, 9);
  Write("in", in);
  const ToolRun r = Zelt("convert --from YUY2 --to cyuv --size 10x4 --src-stride 32 --dst-stride 24 --quiet " + Path("in") +
                     " " + Path("out"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  std::vector<uint8_t> want(24 * h, 0);
  cycbcr_yuy2_to_cyuv(want.data(), in.data(), w, h, 24, 32);
  EXPECT_EQ(Read("out"), want);
}

struct Refusal {
  const char* what;
  std::string args;     // IN and OUT are replaced by the input and output paths
  int exitCode;
  const char* message;  // must appear in standard error
};

TEST_F(Tool, RefusalsNameTheProblemAndWriteNothing) {
  Write("in", std::vector<uint8_t>(100, 1));
  Write("frame", std::vector<uint8_t>(16 * 2 * 2, 1));
  const Refusal cases[] = {
      {"wrong file size", "convert --from UYVY --to YUY2 --size 16x2 IN OUT", 1, "whole number of frames"},
      {"unknown source", "convert --from ABCD --to YUY2 --size 16x2 FRAME OUT", 1, "unknown source format 'ABCD'"},
      {"unknown destination", "convert --from UYVY --to NOPE --size 16x2 FRAME OUT", 1, "unknown destination format"},
      {"no route", "convert --from RGB32 --to RGB32 --size 8x2 FRAME OUT", 1, "no conversion from RGB32 to RGB32"},
      {"source-only code", "convert --from UYVY --to 422P --size 16x2 FRAME OUT", 1, "source only"},
      {"stride too small", "convert --from UYVY --to YUY2 --size 16x2 --src-stride 8 FRAME OUT", 1, "--src-stride 8"},
      {"unwritable output", "convert --from UYVY --to YUY2 --size 16x2 FRAME NODIR", 1, "cannot write output"},
      {"missing input", "convert --from UYVY --to YUY2 --size 16x2 MISSING OUT", 1, "cannot open input"},
      {"bad size", "convert --from UYVY --to YUY2 --size 16 FRAME OUT", 2, "WIDTHxHEIGHT"},
      {"zero size", "convert --from UYVY --to YUY2 --size 0x2 FRAME OUT", 2, "above 0"},
      {"unknown option", "convert --form UYVY --to YUY2 --size 16x2 FRAME OUT", 2, "unknown option --form"},
      {"no files", "convert --from UYVY --to YUY2 --size 16x2", 2, "input file and an output file"},
      {"unknown command", "frobnicate", 2, "unknown command"},
      {"negative number", "convert --from UYVY --to YUY2 --size 16x2 --matrix -1 FRAME OUT", 2, "whole number"},
  };
  for (const Refusal& c : cases) {
    std::string args = c.args;
    auto replace = [&](const std::string& from, const std::string& to) {
      for (size_t p; (p = args.find(from)) != std::string::npos;) args.replace(p, from.size(), to);
    };
    replace("NODIR", Path("no/such/dir/out"));
    replace("MISSING", Path("missing"));
    replace("FRAME", Path("frame"));
    replace("IN", Path("in"));
    replace("OUT", Path("out"));
    const ToolRun r = Zelt(args);
    EXPECT_EQ(r.exitCode, c.exitCode) << c.what << ": " << r.err;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << c.what << ": " << r.err;
    EXPECT_TRUE(OnlyInputsLeft(2)) << c.what;
  }
}

TEST_F(Tool, HelpForEveryCommand) {
  for (const char* cmd : {"--help", "formats --help", "convert --help", "demo --help", "bench --help"}) {
    const ToolRun r = Zelt(cmd);
    EXPECT_EQ(r.exitCode, 0) << cmd;
  }
  EXPECT_EQ(Zelt(std::string()).exitCode, 2);
}

TEST_F(Tool, DemoWritesPicturesThatAStandardDecoderReads) {
  const ToolRun r = Zelt("demo --size 50x20 " + Path("pics"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  const std::string png = Path("pics/pattern.png");
  ASSERT_TRUE(fs::exists(png));
  if (std::system("python3 -c 'import zlib' >/dev/null 2>&1") != 0) GTEST_SKIP() << "python3 not available";
  // An independent decode: chunk CRCs, zlib stream, 50x20 RGB with filter bytes.
  const std::string script = Path("check.py");
  std::ofstream(script) << R"(import sys, struct, zlib
data = open(sys.argv[1], 'rb').read()
assert data[:8] == b'\x89PNG\r\n\x1a\n'
pos, idat, ihdr = 8, b'', None
while pos < len(data):
    n, = struct.unpack('>I', data[pos:pos+4]); kind = data[pos+4:pos+8]; body = data[pos+8:pos+8+n]
    crc, = struct.unpack('>I', data[pos+8+n:pos+12+n])
    assert zlib.crc32(kind + body) == crc, kind
    if kind == b'IHDR': ihdr = struct.unpack('>IIBBBBB', body)
    if kind == b'IDAT': idat += body
    pos += 12 + n
w, h = ihdr[0], ihdr[1]
raw = zlib.decompress(idat)
assert ihdr[2:4] == (8, 2) and len(raw) == h * (1 + 3 * w)
print(w, h)
)";
  const std::string out = Path("py.txt");
  ASSERT_EQ(std::system(("python3 '" + script + "' '" + png + "' >'" + out + "'").c_str()), 0);
  std::ifstream in(out);
  std::string line;
  std::getline(in, line);
  EXPECT_EQ(line, "50 20");
}

}  // namespace
