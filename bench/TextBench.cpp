// Throughput of text search and editing and of the switch readers on the in-memory host.
//
// Every figure is bytes per second of the text worked on, one byte per character
// (the texts are ASCII, so characters, UTF-16 units and UTF-8 bytes agree). The
// editors run on 1, 16 and 64 MiB with a match every 16 characters, so that a
// cost per match that grows with the text would show as a falling rate. Each
// editor first runs once untimed, so that the text's storage has grown to its
// final size: a large text otherwise pays the kernel's first touch of fresh
// pages in its one or two timed runs, which small texts pay once in hundreds.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "params/Switches.h"
#include "text/TextSearch.h"

namespace {

constexpr size_t kMiB = size_t(1) << 20;

size_t SizeOf(const benchmark::State& state) { return static_cast<size_t>(state.range(0)) * kMiB; }

void CountBytes(benchmark::State& state, size_t perIteration) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(perIteration));
}

// `n` characters made of `block` over and over (cut at the end).
std::string Repeated(const std::string& block, size_t n) {
  std::string s;
  s.reserve(n);
  while (s.size() < n) s.append(block, 0, std::min(block.size(), n - s.size()));
  return s;
}

void Set(fmx::TextAutoPtr& t, const std::string& ascii) {
  t->AssignWithLength(ascii.data(), static_cast<uint32_t>(ascii.size()), fmx::Text::kEncoding_ASCII_Mac);
}

// "bc" once in every 16 characters, replaced by three characters: the text grows
// as it is edited, so every edit moves the host's edit point.
void BM_SubstituteTxt(benchmark::State& state) {
  const std::string source = Repeated("Abcdefghijklmnop", SizeOf(state));
  fmx::TextAutoPtr txt, search, replacement;
  Set(search, "BC");
  Set(replacement, "xyz");
  Set(txt, source);
  XP7_SubstituteTxt(txt, search, replacement);
  for (auto _ : state) {
    state.PauseTiming();
    Set(txt, source);
    state.ResumeTiming();
    XP7_SubstituteTxt(txt, search, replacement);
  }
  CountBytes(state, source.size());
}
BENCHMARK(BM_SubstituteTxt)->Arg(1)->Arg(16)->Arg(64)->Unit(benchmark::kMillisecond);

// An LF every 16 characters through mode 10: the LF pass turns each into CR, the
// CR pass inserts an LF after each.
void BM_ChangeLineEndsTxt(benchmark::State& state) {
  const std::string source = Repeated("The quick fox.\n", SizeOf(state));
  fmx::TextAutoPtr txt;
  Set(txt, source);
  XP7_ChangeLineEndsTxt(txt, 10);
  for (auto _ : state) {
    state.PauseTiming();
    Set(txt, source);
    state.ResumeTiming();
    XP7_ChangeLineEndsTxt(txt, 10);
  }
  CountBytes(state, source.size());
}
BENCHMARK(BM_ChangeLineEndsTxt)->Arg(1)->Arg(16)->Arg(64)->Unit(benchmark::kMillisecond);

// The only match 16 characters before the end; range(1) is caseSensitive.
void BM_Position(benchmark::State& state) {
  std::string source = Repeated("abcdefghijklmnop", SizeOf(state));
  source.replace(source.size() - 16, 6, "NEEDLE");
  fmx::TextAutoPtr txt, search;
  Set(txt, source);
  Set(search, "NEEDLE");
  const bool caseSensitive = state.range(1) != 0;
  for (auto _ : state) benchmark::DoNotOptimize(XP7_Position(txt, search, 0, 1, caseSensitive));
  CountBytes(state, source.size());
}
BENCHMARK(BM_Position)->ArgsProduct({{1, 16, 64}, {0, 1}})->Unit(benchmark::kMillisecond);

// A switches string of `n` bytes with the wanted switch last.
std::string Switches(size_t n) {
  std::string s = Repeated("-Option=12345 ", n - 16);
  return s + "-Timeout=30 -X ";
}

void BM_HasSwitch(benchmark::State& state) {
  const std::string text = Switches(SizeOf(state));
  for (auto _ : state) benchmark::DoNotOptimize(XP_HasSwitch(text.c_str(), "-timeout="));
  CountBytes(state, text.size());
}
BENCHMARK(BM_HasSwitch)->Arg(1)->Arg(8)->Unit(benchmark::kMicrosecond);

void BM_GetTaggedLong(benchmark::State& state) {
  const std::string text = Switches(SizeOf(state));
  long value;
  for (auto _ : state) benchmark::DoNotOptimize(XP_GetTaggedLong(text.c_str(), "-timeout=", &value));
  CountBytes(state, text.size());
}
BENCHMARK(BM_GetTaggedLong)->Arg(1)->Arg(8)->Unit(benchmark::kMicrosecond);

// The worst case for a position-by-position comparison: a 64 KiB tag of "a"s
// ending in "=" in a text of nothing but "a"s, so that every position matches
// all but the last byte of the tag.
void BM_GetTaggedStrLongTag(benchmark::State& state) {
  const std::string text(SizeOf(state), 'a');
  const std::string tag = std::string(64 * 1024 - 1, 'a') + "=";
  char value[2000];
  for (auto _ : state) {
    benchmark::DoNotOptimize(XP_GetTaggedStr(text.c_str(), static_cast<long>(text.size()), tag.c_str(),
                                             static_cast<long>(tag.size()), '-', 0, 1, false, value, sizeof value));
  }
  CountBytes(state, text.size());
}
BENCHMARK(BM_GetTaggedStrLongTag)->Arg(1)->Arg(8)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
