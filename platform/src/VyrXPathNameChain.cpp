#include "VyrXPathNameChain.h"

#include <algorithm>

namespace {

constexpr std::size_t kShortestStep = std::string_view("/p:*[@name='']").size();

constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

constexpr bool IsNameCharacter(char c) {
  return IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

/// Characters below the blank, the ones that XML allows aside, end an expression in an error.
constexpr bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

class ChainReader {
 public:
  ChainReader(std::string_view expression, const VyrXPathNamespaces& namespaces)
      : rest_(expression), namespaces_(namespaces) {}

  bool Read(VyrNameChain& chain) {
    if (!ReadPrefix(chain.rootNamespaceURI) || !ReadName(chain.rootName)) return false;
    chain.steps.reserve(rest_.size() / kShortestStep);
    while (!rest_.empty()) {
      if (!ReadStep(chain.steps.emplace_back())) return false;
    }
    return true;
  }

 private:
  bool ReadStep(VyrNameChain::Step& step) {
    if (!Skip("/")) return false;
    step.isChild = !Skip("/");
    return ReadPrefix(step.namespaceURI) && Skip("*[@name=") && ReadLiteral(step.name) && Skip("]");
  }

  bool ReadPrefix(std::string_view& uri) {
    std::string_view prefix;
    if (!ReadName(prefix) || !Skip(":")) return false;
    if (prefix == prefix_) {
      uri = uri_;
      return true;
    }
    const auto declared =
        std::find_if(namespaces_.rbegin(), namespaces_.rend(),
                     [&](const auto& declaration) { return declaration.first == prefix; });
    // The prefix "xml" means what it always means; a namespace without a name has no elements.
    if (declared == namespaces_.rend() || declared->second.empty() || prefix == "xml") return false;
    prefix_ = prefix;
    uri = uri_ = declared->second;
    return true;
  }

  /// Of names only those in ASCII are recognised.
  bool ReadName(std::string_view& name) {
    if (rest_.empty() || !IsLetter(rest_.front())) return false;
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsNameCharacter);
    name = Take(static_cast<std::size_t>(end - rest_.begin()));
    return true;
  }

  bool ReadLiteral(std::string_view& text) {
    if (rest_.empty() || (rest_.front() != '\'' && rest_.front() != '"')) return false;
    const std::string_view quote = Take(1);
    const std::size_t size = rest_.find(quote);
    if (size == std::string_view::npos) return false;
    text = Take(size);
    return Skip(quote) && std::none_of(text.begin(), text.end(), IsControl);
  }

  bool Skip(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  std::string_view Take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }

  std::string_view rest_;
  const VyrXPathNamespaces& namespaces_;
  std::string_view prefix_;  // the prefix seen last and its namespace
  std::string_view uri_;
};

}  // namespace

bool VyrReadNameChain(std::string_view expression, const VyrXPathNamespaces& namespaces,
                      VyrNameChain& chain) {
  return ChainReader(expression, namespaces).Read(chain);
}
