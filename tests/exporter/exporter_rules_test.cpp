// The exporter's own rules: counters never go backwards when the daemon resets
// them, and object names become valid label values whatever the daemon sends.
#include <gtest/gtest.h>
#include <prometheus/text_serializer.h>

#include <cstring>

#include "counter_continuity.h"
#include "snapshot.h"

namespace exporter {
namespace {

TEST(CounterContinuity, ResetsOfTheDaemonNeverMakeACounterGoBack) {
  CounterContinuity counters;
  EXPECT_EQ(counters.next("bytes", 100), 100);
  EXPECT_EQ(counters.next("bytes", 150), 150);
  EXPECT_EQ(counters.next("bytes", 20), 170);  // stats reset or daemon restart: 150 were already counted
  EXPECT_EQ(counters.next("bytes", 0), 170);
  EXPECT_EQ(counters.next("bytes", 5), 175);
  EXPECT_EQ(counters.next("other", 7), 7);  // series are independent
}

TEST(CounterContinuity, ADeletedObjectIsForgottenAfterACompletePoll) {
  CounterContinuity counters;
  counters.next("stream 1", 500);
  counters.next("stream 2", 10);
  counters.forgetUnseen();  // both seen in this poll
  counters.next("stream 2", 20);
  counters.forgetUnseen();  // stream 1 gone
  EXPECT_EQ(counters.size(), 1u);
  EXPECT_EQ(counters.next("stream 1", 3), 3);  // a new stream under the old ID starts on its own
}

TEST(SnapshotBuilder, CountersKeyedByLabelsKeepTheirOffsetAcrossPolls) {
  CounterContinuity counters;
  auto poll = [&counters](uint64_t raw) {
    SnapshotBuilder builder(counters);
    builder.counter("smgr_stream_sent_bytes_total", "Bytes sent", ObjectLabels(1, "cam", 4), raw);
    builder.counter("smgr_stream_sent_bytes_total", "Bytes sent", ObjectLabels(2, "cam", 4), raw * 2);
    auto families = builder.take();
    return std::make_pair(families.at(0).metric.at(0).counter.value,
                          families.at(0).metric.at(1).counter.value);
  };
  poll(1000);
  EXPECT_EQ(poll(10), std::make_pair(1010.0, 2020.0));
}

TEST(LabelText, NamesAreBoundedByTheirFieldAndValidUtf8) {
  const char unterminated[4] = {'c', 'a', 'm', '1'};
  EXPECT_EQ(LabelText(unterminated, sizeof unterminated), "cam1");
  EXPECT_EQ(LabelText("caf\xC3\xA9", 8), "caf\xC3\xA9");
  EXPECT_EQ(LabelText("a\xFF"
                      "b",
                      8),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(LabelText("\xC3", 8), "\xEF\xBF\xBD");                                  // cut sequence
  EXPECT_EQ(LabelText("\xC0\xAF", 8), "\xEF\xBF\xBD\xEF\xBF\xBD");                  // overlong
  EXPECT_EQ(LabelText("\xED\xA0\x80", 8), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");  // surrogate
}

TEST(LabelText, QuotesBackslashesAndNewlinesInNamesAreEscapedInTheExposition) {
  CounterContinuity counters;
  SnapshotBuilder builder(counters);
  const char name[] = "a\"b\\c\nd";
  builder.gauge("smgr_stream_bit_rate_bits_per_second", "Bit rate", ObjectLabels(3, name, sizeof name), 1);
  const std::string text = prometheus::TextSerializer().Serialize(builder.take());
  EXPECT_NE(text.find(R"(smgr_stream_bit_rate_bits_per_second{id="3",name="a\"b\\c\nd"} 1)"),
            std::string::npos)
      << text;
}

}  // namespace
}  // namespace exporter
