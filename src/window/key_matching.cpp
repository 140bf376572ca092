#include "window/key_matching.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace window {
namespace {

// One that finds its keys taken moves others to theirs.
class Matching {
 public:
  explicit Matching(const std::vector<KeyWish>& wishes) : wishes_(wishes) {
    for (std::size_t i = 0; i < wishes.size(); ++i) {
      if (!wishes[i].key.isNull()) owners_[wishes[i].key].insert(i);
    }
    for (std::size_t i = 0; i < wishes.size(); ++i) {
      std::set<QChar> tried;
      if (wishes[i].key.isNull()) place(i, tried);
    }
  }

  std::vector<QChar> keys() const {
    std::vector<QChar> keys(wishes_.size());
    for (const auto& [key, owners] : owners_) {
      for (const std::size_t owner : owners) keys[owner] = key;
    }
    return keys;
  }

 private:
  // Who has the key and may be in sight together with the wish.
  std::vector<std::size_t> rivals(std::size_t wish, QChar key) {
    std::vector<std::size_t> found;
    std::ranges::copy_if(owners_[key], std::back_inserter(found),
                         [&](std::size_t owner) { return !take_turns(wishes_[wish], wishes_[owner]); });
    return found;
  }

  bool place(std::size_t wish, std::set<QChar>& tried) {
    const std::vector<QChar>& keys = wishes_[wish].keys;
    const auto is_free = [&](QChar key) { return rivals(wish, key).empty(); };
    if (const auto free = std::ranges::find_if(keys, is_free); free != keys.end()) {
      owners_[*free].insert(wish);
      return true;
    }
    return std::ranges::any_of(
        keys, [&](QChar key) { return tried.insert(key).second && displace(wish, key, tried); });
  }

  bool displace(std::size_t wish, QChar key, std::set<QChar>& tried) {
    const auto before = owners_;
    const std::vector<std::size_t> leaving = rivals(wish, key);
    for (const std::size_t rival : leaving) owners_[key].erase(rival);
    owners_[key].insert(wish);
    const bool moved = std::ranges::all_of(
        leaving, [&](std::size_t rival) { return !wishes_[rival].fixed && place(rival, tried); });
    if (!moved) owners_ = before;
    return moved;
  }

  const std::vector<KeyWish>& wishes_;
  std::map<QChar, std::set<std::size_t>> owners_;
};

}  // namespace

bool take_turns(const KeyWish& one, const KeyWish& other) {
  return std::ranges::any_of(one.pages, [&](const auto& page) {
    const auto found = other.pages.find(page.first);
    return found != other.pages.end() && found->second != page.second;
  });
}

std::vector<QChar> match_keys(const std::vector<KeyWish>& wishes) {
  return Matching(wishes).keys();
}

}  // namespace window
