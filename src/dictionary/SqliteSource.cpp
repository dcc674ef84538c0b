#include "dictionary/SqliteSource.h"

#include <sqlite3.h>

#include <string_view>
#include <utility>

#include "base/Hex.h"

namespace melvorin {
namespace {

// A program that writes to the file, such as a backup being put back, is soon done.
constexpr int kWaitForOthersMs = 500;
constexpr int kLongestValue = 1 << 20;  // bytes of a field or a row
// A whole chord book takes some ten thousand steps.
constexpr int kStepsOfRound = 100'000;
constexpr int kMostRounds = 500;

struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

Text sentenceFor(int code, sqlite3* database) {
    switch (code & 0xFF) {
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return u"The file does not exist or may not be read.";
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return u"Another program keeps the file locked.";
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
        case SQLITE_FORMAT:
            return u"The file is no chord database, or it is damaged.";
        case SQLITE_IOERR:
            return u"The file cannot be read from its disk.";
        case SQLITE_NOMEM:
            return u"There is not enough memory.";
        default:
            return u"The database reports: " + fromUtf8(sqlite3_errmsg(database)) + u".";
    }
}

// What a file defines may read its tables, and nothing else: no functions, no recursion.
int allowReading(void*, int action, const char* subject, const char*, const char*, const char*) {
    const bool isCheck = action == SQLITE_PRAGMA && subject == std::string_view("quick_check");
    return action == SQLITE_SELECT || action == SQLITE_READ || isCheck ? SQLITE_OK : SQLITE_DENY;
}

int isTooLong(void* rounds) {
    return ++*static_cast<int*>(rounds) > kMostRounds;
}

bool usesWriteAheadLog(sqlite3* database) {
    constexpr sqlite3_int64 kVersionsAt = 18;  // of the file's header: for writing, for reading
    sqlite3_file* file = nullptr;
    unsigned char versions[2] = {};
    return sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file) == SQLITE_OK &&
           file != nullptr && file->pMethods != nullptr &&
           file->pMethods->xRead(file, versions, sizeof versions, kVersionsAt) == SQLITE_OK &&
           versions[1] > 1;
}

// The name under which SQLite takes a file for one that nobody writes to.
std::string uriOfUnchanging(const std::string& path) {
    std::string uri = "file:";
    for (const char c : path) {
        if (std::string_view("%?#\\").find(c) == std::string_view::npos)
            uri += c;
        else
            appendHex(uri += '%', static_cast<unsigned char>(c), 2);
    }
    return uri + "?immutable=1";
}

std::optional<Text> columnText(sqlite3_stmt* statement, int column) {
    const unsigned char* const bytes = sqlite3_column_text(statement, column);
    if (bytes == nullptr)
        return std::nullopt;
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
    return fromUtf8({reinterpret_cast<const char*>(bytes), length});
}

}  // namespace

Text sqliteVersion() {
    return fromUtf8(sqlite3_libversion());
}

void SqliteSource::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

int SqliteSource::connect(const std::string& name, int flags) {
    sqlite3* database = nullptr;
    const int code =
        sqlite3_open_v2(name.c_str(), &database, SQLITE_OPEN_READONLY | flags, nullptr);
    database_.reset(database);
    if (code != SQLITE_OK)
        return code;
    sqlite3_busy_timeout(database, kWaitForOthersMs);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, kLongestValue);
    sqlite3_set_authorizer(database, allowReading, nullptr);
    return code;
}

Result<Done> SqliteSource::open(TextView connection) {
    const std::string path = toUtf8(connection);
    int code = connect(path, 0);
    // Reading a file in write-ahead mode would leave two more beside it, unless nobody writes to
    // it.
    if (code == SQLITE_OK && usesWriteAheadLog(database_.get()))
        code = connect(uriOfUnchanging(path), SQLITE_OPEN_URI);
    sqlite3* const database = database_.get();
    if (code != SQLITE_OK)
        return Failure{sentenceFor(code, database)};
    // A file that was cut short would else be read with its missing rows empty.
    const Result<Table> check = read(u"pragma quick_check(1)");
    if (!check)
        return Failure{check.cause};
    if (check.value->rows.at(0).at(0) != u"ok")
        return Failure{sentenceFor(SQLITE_CORRUPT, database)};
    return done();
}

Result<Table> SqliteSource::read(TextView recordSource) {
    sqlite3* const database = database_.get();
    // A file may hold a view that never comes to its end.
    int rounds = 0;
    sqlite3_progress_handler(database, kStepsOfRound, isTooLong, &rounds);
    const std::string query = toUtf8(recordSource);
    sqlite3_stmt* prepared = nullptr;
    int code = sqlite3_prepare_v2(database, query.c_str(), -1, &prepared, nullptr);
    const Statement statement(prepared);
    if (code != SQLITE_OK)
        return Failure{sentenceFor(code, database)};
    Table table;
    const int columns = sqlite3_column_count(prepared);
    for (int column = 0; column < columns; ++column)
        table.fields.push_back(fromUtf8(sqlite3_column_name(prepared, column)));
    while ((code = sqlite3_step(prepared)) == SQLITE_ROW) {
        Row& row = table.rows.emplace_back();
        row.reserve(table.fields.size());
        for (int column = 0; column < columns; ++column)
            row.push_back(columnText(prepared, column));
    }
    if (code != SQLITE_DONE)
        return Failure{sentenceFor(code, database)};
    return Result<Table>::success(std::move(table));
}

}  // namespace melvorin
