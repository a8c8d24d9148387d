#include "VDF.hpp"

#include <utility>
#include <vector>

#include "Files.hpp"
#include "Text.hpp"
#include "VDFTokens.hpp"

namespace volbrin {

VDF::~VDF() {
  auto* block = std::get_if<Block>(&value_);
  if (block == nullptr || block->empty()) return;
  // Blocks within blocks are taken out before they go, or each would let go of its own by
  // recursion.
  std::vector<Block> waiting;
  waiting.push_back(std::move(*block));
  while (!waiting.empty()) {
    Block present = std::move(waiting.back());
    waiting.pop_back();
    for (auto& [key, value] : present) {
      if (auto* inner = std::get_if<Block>(&value.value_)) waiting.push_back(std::move(*inner));
    }
  }
}

VDF& VDF::operator=(VDF&& other) noexcept {
  std::swap(value_, other.value_);
  return *this;
}

std::optional<VDF> VDF::parse(const std::string& file) {
  const auto text = readFileIfPossible(file);
  if (!text || !isValidUtf8(*text)) return std::nullopt;
  return parseText(*text);
}

VDF VDF::parseText(std::string_view text) {
  struct OpenBlock {
    std::string key;  ///< in the block around it
    Block block;
  };
  std::vector<OpenBlock> open(1);
  const auto closeLast = [&] {
    OpenBlock done = std::move(open.back());
    open.pop_back();
    open.back().block.insert_or_assign(std::move(done.key), VDF(std::move(done.block)));
  };

  VDFTokens tokens(text);
  using Kind = VDFTokens::Kind;
  while (auto key = tokens.next()) {
    if (key->kind == Kind::open) continue;
    if (key->kind == Kind::close) {
      if (open.size() == 1) break;
      closeLast();
      continue;
    }
    auto value = tokens.next();
    if (!value) break;
    if (value->kind == Kind::open) {
      open.push_back({lowercased(key->text), {}});
    } else if (value->kind == Kind::text) {
      open.back().block.insert_or_assign(lowercased(key->text), VDF(std::move(value->text)));
    } else if (open.size() == 1) {
      break;
    } else {
      closeLast();
    }
  }
  while (open.size() > 1) closeLast();
  return VDF(std::move(open.front().block));
}

const VDF* VDF::at(std::string_view key) const {
  const auto* own = block();
  if (own == nullptr) return nullptr;
  const auto found = own->find(key);
  return found == own->end() ? nullptr : &found->second;
}

const std::string* VDF::textAt(std::string_view key) const {
  const auto* value = at(key);
  return value == nullptr ? nullptr : value->text();
}

const VDF::Block* VDF::blockAt(std::string_view key) const {
  const auto* value = at(key);
  return value == nullptr ? nullptr : value->block();
}

}  // namespace volbrin
