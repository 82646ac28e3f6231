// Every kind of call when memory runs out at any point, and with data that ends where nothing may be read.
// The calls are the request lines that the Windows tests use too.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "call/request.hpp"

namespace {

/// Counts allocations down; the one at 0 fails, and all after it. Below 0 none fails.
int allocations_left = -1;
int blocks_in_use = 0;

bool may_allocate() {
  if (allocations_left < 0) return true;
  if (allocations_left == 0) return false;
  --allocations_left;
  return true;
}

}  // namespace

// ---- what allocates: operator new, and calloc by the linker's --wrap ----

extern "C" void* __real_calloc(std::size_t count, std::size_t size);
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return may_allocate() ? __real_calloc(count, size) : nullptr;
}

void* operator new(std::size_t size) {
  void* const block = may_allocate() ? std::malloc(std::max<std::size_t>(size, 1)) : nullptr;
  if (block == nullptr) throw std::bad_alloc();
  ++blocks_in_use;
  return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  void* const block = may_allocate() ? std::malloc(std::max<std::size_t>(size, 1)) : nullptr;
  if (block != nullptr) ++blocks_in_use;
  return block;
}
void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  --blocks_in_use;
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}

namespace {

using namespace korvex::cli::call;

const Exports kExports = load_exports();

/// Every line that is a request.
std::vector<std::unique_ptr<Request>> requests() {
  std::ifstream file(KORVEX_REQUESTS);
  std::vector<std::unique_ptr<Request>> all;
  for (std::string line; std::getline(file, line);) {
    auto request = std::make_unique<Request>();
    try {
      read_request(line, *request);
    } catch (const BadLine&) {
      continue;
    }
    all.push_back(std::move(request));
  }
  return all;
}

/// A caller's arrays and picture, made before memory runs out.
struct Caller {
  std::vector<std::uint32_t> words = std::vector<std::uint32_t>(2 * 188);
  std::vector<char> text = std::vector<char>(23);
  Bit_Result bits{};
  Symbol_Size size{};
  std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device{korvex_device_create(160, 160),
                                                                          &korvex_device_destroy};

  std::int16_t call(const Request& request) {
    Record record = request.record;  // QR_Encode writes to it
    if (request.target->bits == nullptr) return request.target->draw(kExports, device.get(), record, size);
    bits.bars = words.data();
    bits.guards = words.data() + 188;
    bits.text = text.data();
    return request.target->bits(kExports, record, bits);
  }
  [[nodiscard]] bool has_painted() const {
    std::int32_t width = 0;
    std::int32_t height = 0;
    korvex_device_painted_size(device.get(), &width, &height);
    return width > 0 || height > 0;
  }
};

/// GS1 QR data is translated in place: every call starts from the bytes of the request.
struct Bytes {
  explicit Bytes(Request& of) : request(of) {
    for (const Block& block : request.blocks)
      saved.emplace_back(block.bytes.get(), block.bytes.get() + block.size);
  }
  void restore() {
    for (std::size_t i = 0; i < saved.size(); ++i) std::ranges::copy(saved[i], request.blocks[i].bytes.get());
  }
  Request& request;
  std::vector<std::vector<std::uint8_t>> saved;
};

TEST(Faults, MemoryThatRunsOutAnywhereGivesNoSymbolAndLeavesNothing) {
  constexpr int kEnough = 200;
  int failures = 0;
  for (const auto& request : requests()) {
    Bytes bytes(*request);
    const std::int16_t expected = Caller().call(*request);
    for (int count = 0;; ++count) {
      ASSERT_LT(count, kEnough) << request->id;
      bytes.restore();
      Caller caller;
      const int before = blocks_in_use;
      allocations_left = count;
      const std::int16_t code = caller.call(*request);
      const bool ran_out = allocations_left == 0;
      allocations_left = -1;
      ASSERT_EQ(blocks_in_use, before) << request->id << ", allocation " << count;
      if (!ran_out) {
        ASSERT_EQ(code, expected) << request->id;
        break;
      }
      // The picture's own memory is not the library's to answer for; and the last one may have been enough.
      if (code == expected || korvex_device_failed(caller.device.get()) != 0) continue;
      ASSERT_EQ(code, KORVEX_NO_SYMBOL) << request->id << ", allocation " << count;
      ASSERT_FALSE(caller.has_painted()) << request->id << ", allocation " << count;
      ++failures;
    }
  }
  EXPECT_GT(failures, 50);
}

/// Pages with one behind them that nobody may touch.
class GuardedPages {
 public:
  explicit GuardedPages(std::size_t bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    usable_ = (bytes + page - 1) / page * page;
    size_ = usable_ + page;
    start_ = static_cast<std::uint8_t*>(
        mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (start_ == MAP_FAILED || mprotect(start_ + usable_, page, PROT_NONE) != 0) throw std::bad_alloc();
  }
  ~GuardedPages() { munmap(start_, size_); }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;
  /// Where `count` bytes end at the page.
  [[nodiscard]] std::uint8_t* last(std::size_t count) const { return start_ + usable_ - count; }

 private:
  std::uint8_t* start_ = nullptr;
  std::size_t usable_ = 0;
  std::size_t size_ = 0;
};

TEST(Faults, NothingIsReadPastTheEndOfTheData) {
  constexpr std::size_t kBlocksMost = 2;
  const GuardedPages pages[kBlocksMost] = {GuardedPages(1 << 16), GuardedPages(1 << 16)};
  for (const auto& request : requests()) {
    Bytes bytes(*request);
    const std::int16_t expected = Caller().call(*request);
    bytes.restore();
    ASSERT_LE(request->blocks.size(), kBlocksMost);
    for (std::size_t i = 0; i < request->blocks.size(); ++i) {
      const Block& block = request->blocks[i];
      const Field& field = *find_field(*request->target, block.field);
      const std::size_t size = block.size + (field.kind == Kind::text ? 1 : 0);
      std::uint8_t* const place = pages[i].last(size);
      std::memcpy(place, block.bytes.get(), size);
      std::memcpy(reinterpret_cast<std::uint8_t*>(&request->record) + field.offset, &place, sizeof place);
    }
    EXPECT_EQ(Caller().call(*request), expected) << request->id;
  }
}

}  // namespace
