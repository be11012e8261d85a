// The fixed run of a fuzz target: inputs made from its corpus by a seed alone. libFuzzer goes by the coverage
// that it sees, which differs from run to run and from machine to machine, so that a gate built on it would
// fall by chance.
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kLongestInput = 16384;
constexpr unsigned kSecondsForOne = 20;

std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::cerr << "cannot read " << path << '\n';
    std::exit(2);
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

/** The words of a dictionary of libFuzzer: one in quotes a line, with \\xHH for a byte. */
std::vector<std::string> wordsOf(const char* path) {
  std::ifstream file(path);
  std::vector<std::string> words;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() != '"') {
      continue;
    }
    std::string& word = words.emplace_back();
    for (std::size_t at = 1; at + 1 < line.size(); ++at) {
      if (line[at] != '\\') {
        word += line[at];
      } else if (line[++at] == 'x') {
        word += static_cast<char>(std::stoi(line.substr(at + 1, 2), nullptr, 16));
        at += 2;
      } else {
        word += line[at];
      }
    }
  }
  return words;
}

class FixedInputs {
 public:
  FixedInputs(std::vector<std::string> corpus, std::vector<std::string> words)
      : mCorpus(std::move(corpus)), mWords(std::move(words)) {}

  /** One text of the corpus with one, two, four or eight changes. */
  std::string next() {
    std::string text = mCorpus[below(mCorpus.size())].substr(0, kLongestInput);
    for (std::size_t changes = std::size_t{1} << below(4); changes > 0; --changes) {
      change(text);
    }
    return text.substr(0, kLongestInput);
  }

 private:
  // Not a distribution of the standard library: their numbers differ between libraries.
  std::size_t below(std::size_t end) { return static_cast<std::size_t>(mRandom() % end); }

  std::string partOf(const std::string& text) {
    const std::size_t from = below(text.size() + 1);
    return text.substr(from, below(text.size() - from + 1) >> below(8));
  }

  void change(std::string& text) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t rest = text.size() - at;
    switch (below(8)) {
      case 0:
        text.insert(at, mWords[below(mWords.size())]);
        break;
      case 1: {
        const std::string& word = mWords[below(mWords.size())];
        text.replace(at, word.size(), word);
        break;
      }
      case 2:
        text.erase(at, 1 + (below(rest + 1) >> below(8)));
        break;
      case 3:
        text.insert(at, partOf(text));
        break;
      case 4:
        text.replace(at, below(rest + 1), partOf(mCorpus[below(mCorpus.size())]));
        break;
      case 5:
        text.replace(at, 1, 1, static_cast<char>(below(256)));
        break;
      case 6:
        text.insert(at, text, at, 1);
        break;
      default:
        // Digits, which decide where numbers end.
        text.insert(at, std::to_string(mRandom() >> below(64)));
    }
  }

  std::mt19937_64 mRandom{1};
  std::vector<std::string> mCorpus;
  std::vector<std::string> mWords;
};

/** What the target is fed with stands in a file, which is there when it ends the program. */
class Feeder {
 public:
  explicit Feeder(const char* path)
      : mPath(path), mFile(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {}
  Feeder(const Feeder&) = delete;
  Feeder& operator=(const Feeder&) = delete;

  void feed(const std::string& input) const {
    // Not closed in between: closing a file that was cut waits for the disk.
    if (pwrite(mFile, input.data(), input.size(), 0) != static_cast<ssize_t>(input.size()) ||
        ftruncate(mFile, static_cast<off_t>(input.size())) != 0) {
      std::cerr << "cannot write " << mPath << '\n';
      std::exit(2);
    }
    alarm(kSecondsForOne);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }

  ~Feeder() {
    close(mFile);
    unlink(mPath);
  }

 private:
  const char* mPath;
  int mFile;
};

}  // namespace

/**
 * `fuzz_TARGET --fixed NUMBER KEPT DICTIONARY INPUT...` feeds the inputs, then NUMBER of them changed, and
 * ends; KEPT is the file that holds the one being fed, for when it ends the program. Anything else is for
 * libFuzzer.
 */
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  if (*count < 6 || std::string((*arguments)[1]) != "--fixed") {
    return 0;
  }
  {
    const Feeder target((*arguments)[3]);
    std::vector<std::string> corpus;
    for (int index = 5; index < *count; ++index) {
      corpus.push_back(contentOf((*arguments)[index]));
      target.feed(corpus.back());
    }
    FixedInputs inputs(std::move(corpus), wordsOf((*arguments)[4]));
    for (int left = std::stoi((*arguments)[2]); left > 0; --left) {
      target.feed(inputs.next());
    }
  }
  std::exit(0);
}
