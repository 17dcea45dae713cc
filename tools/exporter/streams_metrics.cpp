// Stream metrics: state, bit rate, sent packets and bytes, up time, RTCP and
// SRT figures. One enumeration and one statistics request per stream.
#include <string>
#include <vector>

#include "sessmgr_api.h"
#include "smgrctl/paging.h"
#include "snapshot.h"

namespace exporter {
namespace {

const std::vector<std::pair<int, std::string>>& StreamStates() {
  static const std::vector<std::pair<int, std::string>> states = [] {
    std::vector<std::pair<int, std::string>> known;
    for (int state = SMGR_STREAM_STATE_STOPPED; state <= SMGR_STREAM_STATE_CONNECTED; ++state) {
      char text[64] = "";
      SessMgr_GetStreamStateString(state, text, sizeof text);
      known.emplace_back(state, LabelText(text, sizeof text));
    }
    return known;
  }();
  return states;
}

void AddRtcp(SnapshotBuilder& out, const LabelList& labels, const SMGR_RTCP_STATS& rtcp) {
  out.counter("smgr_stream_rtcp_received_packets_total", "RTCP packets received", labels, rtcp.nRxOKPackets);
  out.counter("smgr_stream_rtcp_invalid_packets_total", "Invalid RTCP packets received", labels,
              rtcp.nRxInvalidPackets);
  out.counter("smgr_stream_rtcp_sent_packets_total", "RTCP packets sent", labels, rtcp.nTxOKPackets);
  out.gauge("smgr_stream_rtcp_reporters", "Receivers sending RTCP reports", labels, rtcp.nReporters);
}

void AddSrt(SnapshotBuilder& out, const LabelList& labels, const SMGR_STREAM_SRT_STATS& srt) {
  out.gauge("smgr_stream_srt_rtt_seconds", "SRT round-trip time", labels, srt.iRTT / 1000.0);
  out.gauge("smgr_stream_srt_latency_seconds", "SRT latency", labels, srt.iLatency / 1000.0);
  out.counter("smgr_stream_srt_sent_packets_total", "SRT packets sent, retransmissions included", labels,
              srt.Dir.Tx.nSentPkts);
  out.counter("smgr_stream_srt_retransmitted_packets_total", "SRT packets sent again", labels,
              srt.Dir.Tx.nResentPkts);
  out.counter("smgr_stream_srt_lost_packets_total", "SRT packets the receiver reported lost", labels,
              srt.nLostPkts);
  out.counter("smgr_stream_srt_dropped_packets_total", "SRT packets dropped as too late", labels,
              srt.nDroppedPkts);
  out.gauge("smgr_stream_srt_available_bandwidth_bits_per_second", "SRT available bandwidth", labels,
            srt.iAvailBw * 1000.0);
}

class StreamCollector : public FamilyCollector {
 public:
  bool collect(SnapshotBuilder& out) override {
    std::vector<SMGR_STREAM_INFO> streams;
    if (!smgrctl::CollectPages<SMGR_STREAM_INFO>(SessMgr_EnumerateStreams, &streams, 16)) return false;
    for (const SMGR_STREAM_INFO& info : streams) {
      SMGR_OBJECT_SELECTOR selector{};
      selector.enType = SMGR_SELECTBY_OBJECT_ID;
      selector.Via.ID = info.nIndex;
      SMGR_STREAM_STATS stats{};
      stats.nSize = sizeof stats;
      if (!SessMgr_GetStreamStats(&selector, &stats)) {
        if (SessMgr_GetLastError() == SMGR_ERROR_NO_MATCHING_STREAM_FOUND) continue;  // deleted meanwhile
        return false;
      }
      const LabelList labels = ObjectLabels(info.nIndex, info.szName, sizeof info.szName);
      out.states("smgr_stream_state", "Stream state: 1 for the current one", labels, StreamStates(),
                 stats.enState);
      out.gauge("smgr_stream_bit_rate_bits_per_second", "Bit rate the stream sends at", labels,
                stats.nBitRateInKbps * 1000.0);
      out.gauge("smgr_stream_up_time_seconds", "Time since the stream was started", labels,
                static_cast<double>(stats.nUpTimeInSecs));
      const SMGR_SENDER_STREAM_STATS& sender = stats.Counters.Sender;
      out.counter("smgr_stream_sent_packets_total", "Packets sent", labels, sender.nTxOkPackets);
      out.counter("smgr_stream_sent_bytes_total", "Bytes sent", labels, sender.nTxOkBytes);
      out.counter("smgr_stream_failed_packets_total", "Packets the network refused", labels,
                  sender.nTxFailedPackets);
      if (stats.bRTCPEnabled) AddRtcp(out, labels, stats.RTCP);
      if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT)
        AddSrt(out, labels, stats.EncapSpecStats.SRT.Conn);
    }
    return true;
  }
};

const CollectorRegistration registration("streams", []() -> FamilyCollector* { return new StreamCollector; });

}  // namespace
}  // namespace exporter
