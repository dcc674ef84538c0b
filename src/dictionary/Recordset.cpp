#include "dictionary/Recordset.h"

#include <algorithm>
#include <utility>

#include "base/LetterCase.h"

namespace melvorin {
namespace {

constexpr TextView kBlanks = u" \t";

TextView trimmed(TextView text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == TextView::npos ? TextView()
                                   : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

Result<Criterion> broken(TextView criterion, TextView why) {
    return Failure{Text(why).append(u": ").append(criterion)};
}

}  // namespace

bool equalWithoutCase(TextView a, TextView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t left, char16_t right) {
        return unicodeLowerCase(left) == unicodeLowerCase(right);
    });
}

Result<Criterion> readCriterion(TextView criterion) {
    const std::size_t equals = criterion.find(u'=');
    const TextView field = trimmed(criterion.substr(0, equals));
    if (equals == TextView::npos || field.empty() || field.find(u'\'') != TextView::npos)
        return broken(criterion, u"The search criterion has no field to compare");
    const TextView value = trimmed(criterion.substr(equals + 1));
    if (value.empty() || value.front() != u'\'')
        return broken(criterion, u"The search criterion has no text in apostrophes (')");
    const std::size_t end = value.find(u'\'', 1);
    if (end == TextView::npos)
        return broken(criterion, u"The text of the search criterion has no end");
    if (end + 1 != value.size())
        return broken(criterion, u"An apostrophe (') ends the text of the search criterion early");
    return Result<Criterion>::success({Text(field), Text(value.substr(1, end - 1))});
}

Result<Done> Recordset::open(std::unique_ptr<RowSource> source, TextView connection,
                             TextView recordSource) {
    Result<Done> opened = source->open(connection);
    if (!opened)
        return opened;
    Result<Table> table = source->read(recordSource);
    if (!table)
        return Failure{table.cause};
    source_ = std::move(source);
    recordSource_ = recordSource;
    table_ = std::move(*table.value);
    moveFirst();
    return opened;
}

Result<Done> Recordset::refresh() {
    if (!isOpen())
        return Failure{u"The database is not open."};
    Result<Table> table = source_->read(recordSource_);
    if (!table)
        return Failure{table.cause};
    table_ = std::move(*table.value);
    moveFirst();
    return done();
}

std::optional<std::size_t> Recordset::position() const {
    if (eof() || bof())
        return std::nullopt;
    return current_;
}

void Recordset::moveTo(std::size_t row) {
    current_ = std::min(row, count());
    beforeFirst_ = false;
}

void Recordset::moveLast() {
    moveTo(count() == 0 ? 0 : count() - 1);
}

void Recordset::moveNext() {
    moveTo(beforeFirst_ ? 0 : current_ + 1);
}

void Recordset::movePrevious() {
    if (current_ == 0)
        beforeFirst_ = true;
    else
        moveTo(current_ - 1);
}

Result<bool> Recordset::find(TextView criterion) {
    const Result<Criterion> wanted = readCriterion(criterion);
    if (!wanted)
        return Failure{wanted.cause};
    const auto column = columnOf(wanted.value->field);
    if (!column)
        return Failure{u"There is no field " + wanted.value->field + u"."};
    const auto meets = [&](const Row& row) {
        return row[*column] && equalWithoutCase(*row[*column], wanted.value->value);
    };
    const auto from = table_.rows.begin() + static_cast<std::ptrdiff_t>(current_);
    const auto found = std::find_if(from, table_.rows.end(), meets);
    moveTo(static_cast<std::size_t>(found - table_.rows.begin()));
    return Result<bool>::success(!eof());
}

std::optional<Text> Recordset::field(TextView name) const {
    const auto column = columnOf(name);
    const auto row = position();
    if (!column || !row)
        return std::nullopt;
    return cell(*row, *column);
}

std::optional<std::size_t> Recordset::columnOf(TextView name) const {
    const auto found =
        std::find_if(table_.fields.begin(), table_.fields.end(),
                     [&](const Text& field) { return equalWithoutCase(field, name); });
    if (found == table_.fields.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - table_.fields.begin());
}

std::optional<std::size_t> Recordset::rowBeginningWith(TextView text, std::size_t column,
                                                       std::size_t from) const {
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < count(); ++i) {
        const std::size_t row = (from + i) % count();
        const std::optional<Text>& value = cell(row, column);
        if (!value || !equalWithoutCase(TextView(*value).substr(0, text.size()), text))
            continue;
        if (value->size() == text.size())
            return row;
        if (!found)
            found = row;
    }
    return found;
}

}  // namespace melvorin
