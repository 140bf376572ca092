// Keys for captions: none twice among those that can be in sight together.
#pragma once

#include <QChar>
#include <map>
#include <vector>

class QWidget;

namespace window {

struct KeyWish {
  QChar key = {};           // that it has already; null for none
  bool fixed = false;       // it keeps that; otherwise only as long as another needs it
  std::vector<QChar> keys;  // that it could have, the best first
  // What it takes turns in with others, and as which: a stack's page, or one of two in one place.
  std::map<const QWidget*, const QWidget*> pages = {};
};

// Never in sight together: a key of both reaches the one that is.
bool take_turns(const KeyWish& one, const KeyWish& other);

// A key for each wish in its place; null where none is found. As far as that is possible all keep what they
// have. As many as can be have one where nothing takes turns; where things do, one may be left that an
// exhaustive search would serve.
std::vector<QChar> match_keys(const std::vector<KeyWish>& wishes);

}  // namespace window
