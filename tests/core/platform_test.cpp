#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "support/buffers.h"
#include "core/error_log.h"
#include "core/platform.h"
#include "zelt/zelt_api.h"

namespace zelt {
namespace {

struct Captured {
  std::vector<std::pair<uint32_t, std::string>> messages;
};

void Capture(void* user, uint32_t flags, const char* message) {
  static_cast<Captured*>(user)->messages.emplace_back(flags, message);
}

TEST(ErrorLog, FormatsAndRoutesToTheHostHook) {
  Captured c;
  zeltSetErrorLog(Capture, &c);
  ErrFmtOut(0xC0000000u, 0, 0, "ERROR(gen): %s\n", "Exception cycbcr_x");
  std::string longText(2000, 'x');
  ErrFmtOut(0xC0000000u, 0, 0, "%s|%d", longText.c_str(), 7);
  zeltSetErrorLog(nullptr, nullptr);
  ErrFmtOut(0xC0000000u, 0, 0, "to stderr, not captured\n");
  ASSERT_EQ(c.messages.size(), 2u);
  EXPECT_EQ(c.messages[0].first, 0xC0000000u);
  EXPECT_EQ(c.messages[0].second, "ERROR(gen): Exception cycbcr_x\n");
  EXPECT_EQ(c.messages[1].second, longText + "|7");
}

TEST(Memory, AllocIsAlignedAndCopiesAreExact) {
  for (size_t n : {size_t{1}, size_t{17}, size_t{4096}, size_t{5} << 20}) {
    auto* p = static_cast<uint8_t*>(QrAlloc(n));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 16, 0u);
    // Copies at odd offsets, across the streaming threshold.
    const std::vector<uint8_t> src = test::RandomBytes(n + 3, 1);
    CopyMemoryFast(p, src.data() + 3, n);
    EXPECT_TRUE(std::equal(p, p + n, src.begin() + 3)) << n;
    if (n > 8) {
      CopyMemoryStreaming(p + 1, src.data(), n - 1);
      EXPECT_TRUE(std::equal(p + 1, p + n, src.begin())) << n;
    }
    QrFree(p);
  }
  QrFree(nullptr);
}

TEST(Memory, EndianConvertWordSwapsEveryWordInPlaceToo) {
  std::vector<uint8_t> v = {1, 2, 3, 4, 5, 6, 7};
  std::vector<uint8_t> d(7, 0xEE);
  EndianConvertWord(d.data(), v.data(), 3);
  EXPECT_EQ(d, (std::vector<uint8_t>{2, 1, 4, 3, 6, 5, 0xEE}));
  EndianConvertWord(v.data(), v.data(), 3);
  EXPECT_EQ(v, (std::vector<uint8_t>{2, 1, 4, 3, 6, 5, 7}));
}

struct Job {
  int32_t* pending;
  QrEvent* done;
  std::atomic<int>* ran;
};

void Worker(void* arg) {
  auto* j = static_cast<Job*>(arg);
  j->ran->fetch_add(1);
  if (qrOSInterlockedDecrement(j->pending) == 0) qrOSSetEvent(j->done);
}

TEST(Threads, WorkersCountDownAndSetTheEventOnce) {
  alignas(4) int32_t pending = 1;
  std::atomic<int> ran{0};
  QrEvent* done = qrOSCreateEvent("test");
  Job job{&pending, done, &ran};
  for (int i = 0; i < 8; ++i) {
    qrOSInterlockedIncrement(&pending);
    qrOSCloseThread(qrOSCreateThread(Worker, &job, "zelt-test"));
  }
  // Whoever brings the count to zero is last. When that is a worker, it sets the
  // event; when every worker finished before this decrement, nobody does.
  if (qrOSInterlockedDecrement(&pending) != 0) {
    EXPECT_TRUE(qrOSWaitForEvent(done, 30000));
  }
  EXPECT_EQ(qrOSReadCounter(&pending), 0);
  EXPECT_EQ(ran.load(), 8);
  qrOSCloseEvent(done);
}

TEST(Threads, WaitTimesOutOnAnUnsetEvent) {
  QrEvent* e = qrOSCreateEvent(nullptr);
  EXPECT_FALSE(qrOSWaitForEvent(e, 5));
  qrOSCloseEvent(e);
}

}  // namespace
}  // namespace zelt
