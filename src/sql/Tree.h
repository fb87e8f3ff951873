// The tree of one statement: one small class per node, children owned by unique_ptr.
#pragma once

#include "sql/ExpressionTree.h"
#include "sql/QueryTree.h"
#include "sql/StatementTree.h"
