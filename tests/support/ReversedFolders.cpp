// Preloaded, it lets a process see the entries of every folder in the reverse of the order in which
// the file system keeps them: what hangs on that order shows.

#include <dirent.h>
#include <dlfcn.h>

#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

static_assert(sizeof(dirent) == sizeof(dirent64), "the two kinds of entries are one");

namespace {

struct Listing {
  std::vector<dirent> entries;  // the last one is told next
  dirent told;
};

std::mutex mutex;
std::map<DIR*, Listing> listings;

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

Listing ReadAll(DIR* folder) {
  static auto* const read = Next<dirent*(DIR*)>("readdir");
  Listing listing{};
  while (const dirent* entry = read(folder)) {
    dirent copy{};
    std::memcpy(&copy, entry, entry->d_reclen);
    listing.entries.push_back(copy);
  }
  return listing;
}

dirent* ReadReversed(DIR* folder) {
  const std::lock_guard lock(mutex);
  auto at = listings.find(folder);
  if (at == listings.end()) at = listings.emplace(folder, ReadAll(folder)).first;
  Listing& listing = at->second;
  if (listing.entries.empty()) return nullptr;
  listing.told = listing.entries.back();
  listing.entries.pop_back();
  return &listing.told;
}

}  // namespace

extern "C" {

dirent* readdir(DIR* folder) {
  return ReadReversed(folder);
}

dirent64* readdir64(DIR* folder) {
  return reinterpret_cast<dirent64*>(ReadReversed(folder));
}

int closedir(DIR* folder) {
  static auto* const close = Next<int(DIR*)>("closedir");
  {
    const std::lock_guard lock(mutex);
    listings.erase(folder);
  }
  return close(folder);
}

/// Shows a process that it runs with this library.
char hol_folders_are_reversed = 1;
}
