// The databases behind ODBC that the tests run on, and how each declares a column.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"
#include "sqlite/TestBook.h"

namespace kpTables::test {

struct Backend {
    std::string name;     ///< of the test
    std::string driver;   ///< of with_drivers.py
    std::string dbms;     ///< of kptest: the server that it stands for
    std::string counter;  ///< the declaration of a counter that is the key
    std::string text;
    std::string memo;
    std::string amount;
    std::string real;
    std::string whole;
    std::string moment;
    std::string flag;
    VarType amountType = VarType::Currency;  ///< as the driver describes it
    VarType flagType = VarType::Integer;
    bool exactDoubles = true;  ///< else its driver passes them with fifteen digits
};

void PrintTo(const Backend& backend, std::ostream* out);

/// Those whose drivers are there; the server's only beside private_server.py.
const std::vector<Backend>& Backends();

/// A database of the test's own, and connections to it.
class OdbcDatabase {
public:
    explicit OdbcDatabase(const Backend& backend);
    ~OdbcDatabase();

    const std::string& Url() const noexcept { return url_; }
    BookPtr Open(const BookOptions& options = {}) const { return OpenBook(url_, options); }
    /// Makes the table T: id, 名称, 金额, 单价, 数, 日期, 标志, 说明; and K, without a key: 编号, 数, 单价.
    void MakeTables(Book& book) const;

private:
    const Backend& backend_;
    TemporaryDirectory directory_;
    std::string url_;
};

}  // namespace kpTables::test
