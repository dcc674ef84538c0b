#include "paper/PageFlow.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr double kNear = 0.01;

// Rows that stay together, with the empty lines above them.
struct Atom {
    struct Part {
        const PaperRow* row = nullptr;
        double gap = 0;
        bool isLabel = false;
    };
    std::vector<Part> parts;

    double height(bool withGap) const {
        double sum = withGap ? 0 : -parts.front().gap;
        for (const Part& part : parts)
            sum += part.gap + part.row->scaledHeight();
        return sum;
    }
    std::size_t lines() const {
        std::size_t count = 0;
        for (const Part& part : parts)
            count += part.row->lines.size();
        return count;
    }
    void append(Atom&& other) { parts.insert(parts.end(), other.parts.begin(), other.parts.end()); }
};

using Atoms = std::vector<Atom>;

Atom atomOf(const PaperUnit& unit) {
    Atom atom;
    for (const PaperRow& row : unit.rows)
        atom.parts.push_back({&row, atom.parts.empty() ? unit.gap : 0, unit.isLabel});
    return atom;
}

// Puts an atom to its neighbour where it would be a line alone, or a label without what it names.
void joinLonely(Atoms& atoms, double height) {
    const auto join = [&](std::size_t i) {
        if (i + 1 >= atoms.size() ||
            atoms[i].height(false) + atoms[i + 1].height(true) > height + kNear)
            return false;
        atoms[i].append(std::move(atoms[i + 1]));
        atoms.erase(atoms.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        return true;
    };
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        while (atoms[i].parts.back().isLabel && join(i)) {
        }
    }
    if (!atoms.empty() && atoms.front().lines() == 1)
        join(0);
    if (atoms.size() > 1 && atoms.back().lines() == 1)
        join(atoms.size() - 2);
}

// A section in the pieces it may be split into.
Atoms atomsOf(const PaperSection& section, double height) {
    Atoms atoms;
    for (const PaperUnit& unit : section.units) {
        Atom atom = atomOf(unit);
        if (atom.height(false) <= height + kNear) {
            atoms.push_back(std::move(atom));
            continue;
        }
        Atoms rows;
        for (const Atom::Part& part : atom.parts)
            rows.push_back({{part}});
        joinLonely(rows, height);
        std::move(rows.begin(), rows.end(), std::back_inserter(atoms));
    }
    joinLonely(atoms, height);
    return atoms;
}

class Flow {
  public:
    explicit Flow(const ColumnHeights& heights) : heights_(heights) {}

    void add(const PaperSection& section);
    std::vector<PlacedRow> rows() { return std::move(rows_); }

  private:
    double roomOf(std::size_t page) const {
        return page == 0 ? heights_.firstHeight : heights_.height;
    }
    bool fits(double gap, double height) const {
        return (isTop_ ? 0 : y_ + gap) + height <= roomOf(page_) + kNear;
    }
    void nextColumn();
    void place(const Atom& atom, double gap);

    ColumnHeights heights_;
    std::vector<PlacedRow> rows_;
    std::size_t page_ = 0;
    unsigned column_ = 0;
    double y_ = 0;
    bool isTop_ = true;
};

void Flow::nextColumn() {
    if (++column_ == heights_.columns) {
        column_ = 0;
        ++page_;
    }
    y_ = 0;
    isTop_ = true;
}

void Flow::place(const Atom& atom, double gap) {
    for (const Atom::Part& part : atom.parts) {
        const bool isFirst = &part == &atom.parts.front();
        y_ += isTop_ ? 0 : isFirst ? gap : part.gap;
        isTop_ = false;
        rows_.push_back({page_, column_, y_, part.row, part.isLabel});
        y_ += part.row->scaledHeight();
    }
}

void Flow::add(const PaperSection& section) {
    const double height = section.height();
    const double most = std::max(heights_.firstHeight, heights_.height);
    const bool isWhole = height <= most + kNear;
    Atoms atoms;
    if (isWhole) {
        Atom& whole = atoms.emplace_back();
        for (const PaperUnit& unit : section.units)
            whole.append(atomOf(unit));
    } else {
        atoms = atomsOf(section, most);
    }
    for (Atom& atom : atoms) {
        const bool isFirst = &atom == &atoms.front();
        const double gap = isFirst ? section.gap : atom.parts.front().gap;
        // The first page may be the lower one, and then nothing is lost by going on.
        while (!fits(gap, atom.height(false)) && !(isTop_ && roomOf(page_) >= most - kNear))
            nextColumn();
        place(atom, gap);
    }
}

}  // namespace

std::vector<PlacedRow> flowRows(const SetSong& song, const ColumnHeights& heights) {
    Flow flow(heights);
    for (const PaperSection& section : song.sections)
        flow.add(section);
    return flow.rows();
}

}  // namespace melvorin
