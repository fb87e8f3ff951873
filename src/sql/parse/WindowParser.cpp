// "OVER (...)": the rows that a window function sees.
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

FrameBound ParseFrameBound(TokenCursor& cursor) {
    constexpr int kMostRows = 1000000;
    FrameBound bound;
    if (cursor.Accept("CURRENT")) {
        cursor.Expect("ROW");
        return bound;
    }
    const bool unbounded = cursor.Accept("UNBOUNDED");
    if (!unbounded) bound.rows = cursor.TakeNumber("UNBOUNDED, CURRENT ROW or a number of rows", 0, kMostRows);
    const bool preceding = cursor.Accept("PRECEDING");
    if (!preceding && !cursor.Accept("FOLLOWING")) cursor.Fail("PRECEDING or FOLLOWING");
    using enum FrameBound::Kind;
    if (unbounded)
        bound.kind = preceding ? UnboundedPreceding : UnboundedFollowing;
    else
        bound.kind = preceding ? Preceding : Following;
    return bound;
}

/// "ROWS BETWEEN first AND last", "ROWS first" and the same with RANGE.
Window::Frame ParseFrame(TokenCursor& cursor) {
    Window::Frame frame;
    frame.byRows = cursor.At("ROWS");
    cursor.Take();
    const bool both = cursor.Accept("BETWEEN");
    frame.first = ParseFrameBound(cursor);
    if (!both) return frame;
    cursor.Expect("AND");
    frame.last = ParseFrameBound(cursor);
    return frame;
}

}  // namespace

ExpressionPtr ParseWindow(TokenCursor& cursor, std::unique_ptr<Call> call) {
    const std::size_t at = call->offset;
    auto window = std::make_unique<Window>(std::move(call), at);
    cursor.Expect("OVER");
    cursor.ExpectOperator("(");
    if (cursor.Accept("PARTITION")) {
        cursor.Expect("BY");
        window->partitionBy = ParseExpressions(cursor);
    }
    window->orderBy = ParseOrderBy(cursor);
    if (cursor.At("ROWS") || cursor.At("RANGE")) window->frame = ParseFrame(cursor);
    cursor.ExpectOperator(")");
    return window;
}

}  // namespace kpTables::sql::parse
