// The table of the dialect's errors and how a message is made from its template.
#include "embedded/error.h"

#include <algorithm>
#include <array>

namespace tavcc::sql {
namespace {

using enum AfterError;

// clang-format off
constexpr auto kErrors = std::to_array<ErrorDefinition>({
    // What the reader of a batch finds: nothing of the batch runs.
    {102, 15, 1, "Incorrect syntax near '%.*ls'.", kEndScope},
    {103, 15, 4, "The %S_MSG that starts with '%.*ls' is too long. Maximum length is %d.", kEndScope},
    {104, 15, 1, "ORDER BY items must appear in the select list if the statement contains a UNION, INTERSECT or EXCEPT operator.", kEndScope},
    {105, 15, 1, "Unclosed quotation mark after the character string '%.*ls'.", kEndScope},
    {107, 15, 1, "The column prefix '%.*ls' does not match with a table name or alias name used in the query.", kEndScope},
    {108, 15, 1, "The ORDER BY position number %ld is out of range of the number of items in the select list.", kEndScope},
    {109, 15, 1, "There are more columns in the INSERT statement than values specified in the VALUES clause. The number of values in the VALUES clause must match the number of columns specified in the INSERT statement.", kEndScope},
    {110, 15, 1, "There are fewer columns in the INSERT statement than values specified in the VALUES clause. The number of values in the VALUES clause must match the number of columns specified in the INSERT statement.", kEndScope},
    {111, 15, 1, "'%ls' must be the first statement in a query batch.", kEndScope},
    {113, 15, 1, "Missing end comment mark '*/'.", kEndScope},
    {116, 16, 1, "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS.", kEndScope},
    {117, 15, 1, "The %S_MSG name '%.*ls' contains more than the maximum number of prefixes. The maximum is %d.", kEndScope},
    {119, 15, 1, "Must pass parameter number %d and subsequent parameters as '@name = value'. After the form '@name = value' has been used, all subsequent parameters must be passed in the form '@name = value'.", kEndScope},
    {120, 15, 1, "The select list for the INSERT statement contains fewer items than the insert list. The number of SELECT values must match the number of INSERT columns.", kEndScope},
    {121, 15, 1, "The select list for the INSERT statement contains more items than the insert list. The number of SELECT values must match the number of INSERT columns.", kEndScope},
    {125, 15, 4, "Case expressions may only be nested to level %d.", kEndScope},
    {127, 15, 1, "A TOP N or FETCH rowcount value may not be negative.", kNextStatement},
    {130, 16, 1, "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.", kEndScope},
    {131, 15, 3, "The size (%d) given to the %S_MSG '%.*ls' exceeds the maximum allowed for any data type (%d).", kEndScope},
    {134, 15, 1, "The variable name '%.*ls' has already been declared. Variable names must be unique within a query batch or stored procedure.", kEndScope},
    {135, 15, 1, "Cannot use a BREAK statement outside the scope of a WHILE statement.", kEndScope},
    {136, 15, 1, "Cannot use a CONTINUE statement outside the scope of a WHILE statement.", kEndScope},
    {137, 15, 2, "Must declare the scalar variable \"%.*ls\".", kEndScope},
    {141, 15, 1, "A SELECT statement that assigns a value to a variable must not be combined with data-retrieval operations.", kEndScope},
    {144, 15, 1, "Cannot use an aggregate or a subquery in an expression used for the group by list of a GROUP BY clause.", kEndScope},
    {145, 15, 1, "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.", kEndScope},
    {147, 15, 1, "An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a HAVING clause or a select list, and the column being aggregated is an outer reference.", kEndScope},
    {155, 15, 1, "'%.*ls' is not a recognized %ls option.", kEndScope},
    {156, 15, 1, "Incorrect syntax near the keyword '%.*ls'.", kEndScope},
    {157, 15, 1, "An aggregate may not appear in the set list of an UPDATE statement.", kEndScope},
    {164, 15, 1, "Each GROUP BY expression must contain at least one column that is not an outer reference.", kEndScope},
    {166, 15, 1, "'%ls' does not allow specifying the database name as a prefix to the object name.", kEndScope},
    {168, 15, 1, "The floating point value '%.*ls' is out of the range of computer representation (%d bytes).", kEndScope},
    {169, 15, 1, "A column has been specified more than once in the order by list. Columns in the order by list must be unique.", kEndScope},
    {173, 15, 1, "The definition for column '%.*ls' must include a data type.", kEndScope},
    {174, 15, 1, "The %.*ls function requires %d argument(s).", kEndScope},
    {178, 15, 1, "A RETURN statement with a return value cannot be used in this context.", kEndScope},
    {179, 15, 1, "Cannot use the OUTPUT option when passing a constant to a stored procedure.", kEndScope},
    {189, 15, 1, "The %ls function requires %d to %d arguments.", kEndScope},
    {191, 15, 1, "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into smaller queries.", kEndScope},
    {192, 16, 1, "The scale must be less than or equal to the precision.", kEndScope},
    {194, 15, 1, "A SELECT INTO statement cannot contain a SELECT statement that assigns values to a variable.", kEndScope},
    {195, 15, 10, "'%.*ls' is not a recognized %S_MSG.", kEndScope},
    {196, 15, 1, "SELECT INTO must be the first query in a statement containing a UNION, INTERSECT or EXCEPT operator.", kEndScope},
    {199, 15, 1, "An INSERT statement cannot contain a SELECT statement that assigns values to a variable.", kEndScope},
    {201, 16, 4, "Procedure or function '%.*ls' expects parameter '%.*ls', which was not supplied.", kNextStatement},
    // What the binder finds: the statement's names and types.
    {205, 16, 1, "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of expressions in their target lists.", kEndScope},
    {206, 16, 2, "Operand type clash: %ls is incompatible with %ls", kEndScope},
    {207, 16, 1, "Invalid column name '%.*ls'.", kEndScope},
    {208, 16, 1, "Invalid object name '%.*ls'.", kEndScope},
    {209, 16, 1, "Ambiguous column name '%.*ls'.", kEndScope},
    {213, 16, 1, "Column name or number of supplied values does not match table definition.", kEndScope},
    {217, 16, 1, "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit %d).", kEndTransaction},
    {220, 16, 2, "Arithmetic overflow error for data type %ls, value = %ld.", kNextStatement},
    {232, 16, 3, "Arithmetic overflow error for type %ls, value = %f.", kNextStatement},
    {234, 16, 2, "There is insufficient result space to convert a money value to %ls.", kNextStatement},
    {235, 16, 1, "Cannot convert a char value to money. The char value has incorrect syntax.", kEndTransaction},
    {236, 16, 1, "The conversion from char data type to money resulted in a money overflow error.", kEndTransaction},
    {237, 16, 1, "There is insufficient result space to convert a money value to %ls.", kNextStatement},
    {239, 16, 1, "Duplicate common table expression name '%.*ls' was specified.", kEndScope},
    {240, 16, 1, "Types don't match between the anchor and the recursive part in column \"%.*ls\" of recursive query \"%.*ls\".", kEndScope},
    {241, 16, 1, "Conversion failed when converting date and/or time from character string.", kEndTransaction},
    {242, 16, 3, "The conversion of a %ls data type to a %ls data type resulted in an out-of-range value.", kEndTransaction},
    {243, 16, 1, "Type %.*ls is not a defined system type.", kEndScope},
    {244, 16, 1, "The conversion of the %ls value '%.*ls' overflowed an %hs column. Use a larger integer column.", kEndTransaction},
    {245, 16, 1, "Conversion failed when converting the %ls value '%.*ls' to data type %ls.", kEndTransaction},
    {246, 16, 1, "No anchor member was specified for recursive query \"%.*ls\".", kEndScope},
    {247, 16, 1, "An anchor member was found in the recursive part of recursive query \"%.*ls\".", kEndScope},
    {248, 16, 1, "The conversion of the %ls value '%.*ls' overflowed an int column.", kEndTransaction},
    {252, 16, 1, "Recursive common table expression '%.*ls' does not contain a top-level UNION ALL operator.", kEndScope},
    {253, 16, 1, "Recursive member of a common table expression '%.*ls' has multiple recursive references.", kEndScope},
    {257, 16, 3, "Implicit conversion from data type %ls to %ls is not allowed. Use the CONVERT function to run this query.", kEndScope},
    {263, 16, 1, "Must specify table to select from.", kEndScope},
    {264, 16, 1, "The column name '%.*ls' is specified more than once in the SET clause or column list of an INSERT. A column cannot be assigned more than one value in the same clause. Modify the clause to make sure that a column is updated only once. If this statement updates or inserts columns into a view, column aliasing can conceal the duplication in your code.", kEndScope},
    {266, 16, 2, "Transaction count after EXECUTE indicates a mismatching number of BEGIN and COMMIT statements. Previous count = %ld, current count = %ld.", kNextStatement},
    {281, 16, 1, "%d is not a valid style number when converting from %ls to a character string.", kNextStatement},
    {291, 16, 1, "CAST or CONVERT: invalid attributes specified for type '%.*ls'", kEndScope},
    {293, 16, 1, "Cannot convert char value to smallmoney. The char value has incorrect syntax.", kEndTransaction},
    {294, 16, 1, "The conversion from char data type to smallmoney data type resulted in a smallmoney overflow error.", kEndTransaction},
    {295, 16, 3, "Conversion failed when converting character string to smalldatetime data type.", kEndTransaction},
    {310, 15, 1, "The value %d specified for the MAXRECURSION option exceeds the allowed maximum of %d.", kEndScope},
    {319, 15, 1, "Incorrect syntax near the keyword 'with'. If this statement is a common table expression, an xmlnamespaces clause or a change tracking context clause, the previous statement must be terminated with a semicolon.", kEndScope},
    {336, 15, 1, "Incorrect syntax near '%.*ls'. If this is intended to be a common table expression, you need to explicitly terminate the previous statement with a semi-colon.", kEndScope},
    {402, 16, 1, "The data types %s and %s are incompatible in the %s operator.", kEndScope},
    {408, 16, 1, "A constant expression was encountered in the ORDER BY list, position %i.", kEndScope},
    {422, 16, 4, "Common table expression defined but not used.", kEndScope},
    {460, 16, 1, "DISTINCT operator is not allowed in the recursive part of a recursive common table expression '%.*ls'.", kEndScope},
    {461, 16, 1, "The TOP or OFFSET operator is not allowed in the recursive part of a recursive common table expression '%.*ls'.", kEndScope},
    {462, 16, 1, "Outer join is not allowed in the recursive part of a recursive common table expression '%.*ls'.", kEndScope},
    {465, 16, 1, "Recursive references are not allowed in subqueries.", kEndScope},
    {466, 16, 1, "UNION operator is not allowed in the recursive part of a recursive common table expression '%.*ls'.", kEndScope},
    {467, 16, 1, "GROUP BY, HAVING, or aggregate functions are not allowed in the recursive part of a recursive common table expression '%.*ls'.", kEndScope},
    {506, 16, 1, "The invalid escape character \"%.*ls\" was specified in a %ls predicate.", kNextStatement},
    {512, 16, 1, "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or when the subquery is used as an expression.", kNextStatement},
    {515, 16, 2, "Cannot insert the value NULL into column '%.*ls', table '%.*ls'; column does not allow nulls. %ls fails.", kNextStatement},
    {517, 16, 1, "Adding a value to a '%ls' column caused an overflow.", kNextStatement},
    {529, 16, 1, "Explicit conversion from data type %ls to %ls is not allowed.", kEndScope},
    {530, 16, 1, "The statement terminated. The maximum recursion %d has been exhausted before statement completion.", kNextStatement},
    {535, 16, 0, "The %.*ls function resulted in an overflow. The number of dateparts separating two date/time instances is too large. Try to use %.*ls with a less precise datepart.", kNextStatement},
    {536, 16, 2, "Invalid length parameter passed to the %ls function.", kNextStatement},
    {537, 16, 3, "Invalid length parameter passed to the LEFT or SUBSTRING function.", kNextStatement},
    {544, 16, 1, "Cannot insert explicit value for identity column in table '%.*ls' when IDENTITY_INSERT is set to OFF.", kNextStatement},
    {545, 16, 1, "Explicit value must be specified for identity column in table '%.*ls' either when IDENTITY_INSERT is set to ON or when a replication user is inserting into a NOT FOR REPLICATION identity column.", kNextStatement},
    {628, 16, 0, "Cannot issue SAVE TRANSACTION when there is no active transaction.", kEndBatch},
    {1001, 15, 1, "Line %d: Length or precision specification %d is invalid.", kEndScope},
    {1007, 15, 1, "The %S_MSG '%.*ls' is out of the range for numeric representation (maximum precision 38).", kEndScope},
    {1011, 15, 1, "The correlation name '%.*ls' is specified multiple times in a FROM clause.", kEndScope},
    {1012, 15, 1, "The correlation name '%.*ls' has the same exposed name as table '%.*ls'.", kEndScope},
    {1013, 16, 1, "The objects \"%.*ls\" and \"%.*ls\" in the FROM clause have the same exposed names. Use correlation names to distinguish them.", kEndScope},
    {1014, 15, 1, "A TOP or FETCH clause contains an invalid value.", kNextStatement},
    {1023, 15, 1, "Invalid parameter %d specified for %ls.", kEndScope},
    {1031, 15, 1, "Percent values must be between 0 and 100.", kNextStatement},
    {1033, 15, 1, "The ORDER BY clause is invalid in views, inline functions, derived tables, subqueries, and common table expressions, unless TOP, OFFSET or FOR XML is also specified.", kEndScope},
    {1038, 15, 4, "An object or column name is missing or empty. For SELECT INTO statements, verify each column has a name. For other statements, look for empty alias names. Aliases defined as \"\" or [] are not allowed. Change the alias to a valid name.", kEndScope},
    {1048, 15, 1, "Conflicting cursor options %.*ls and %.*ls.", kEndScope},
    {1060, 15, 1, "The number of rows provided for a TOP or FETCH clauses row count parameter must be an integer.", kEndScope},
    {1062, 16, 1, "The TOP N WITH TIES clause is not allowed without a corresponding ORDER BY clause.", kEndScope},
    {1087, 15, 2, "Must declare the table variable \"%.*ls\".", kEndScope},
    {1088, 16, 12, "Cannot find the object \"%.*ls\" because it does not exist or you do not have permissions.", kEndScope},
    {1205, 13, 51, "Transaction (Process ID %d) was deadlocked on %.*ls resources with another process and has been chosen as the deadlock victim. Rerun the transaction.", kEndTransaction},
    {1222, 16, 51, "Lock request time out period exceeded.", kEndBatch},
    {1505, 16, 1, "The CREATE UNIQUE INDEX statement terminated because a duplicate key was found for the object name '%.*ls' and the index name '%.*ls'. The duplicate key value is %ls.", kNextStatement},
    {1911, 16, 1, "Column name '%.*ls' does not exist in the target table or view.", kEndScope},
    {1913, 16, 1, "The operation failed because an index or statistics with name '%.*ls' already exists on %S_MSG '%.*ls'.", kEndScope},
    {2601, 14, 1, "Cannot insert duplicate key row in object '%.*ls' with unique index '%.*ls'. The duplicate key value is %ls.", kNextStatement},
    {2627, 14, 1, "Violation of %ls constraint '%.*ls'. Cannot insert duplicate key in object '%.*ls'. The duplicate key value is %ls.", kNextStatement},
    {2628, 16, 1, "String or binary data would be truncated in table '%.*ls', column '%.*ls'. Truncated value: '%.*ls'.", kNextStatement},
    {2705, 16, 3, "Column names in each table must be unique. Column name '%.*ls' in table '%.*ls' is specified more than once.", kEndScope},
    {2714, 16, 6, "There is already an object named '%.*ls' in the database.", kEndScope},
    {2715, 16, 6, "Column, parameter, or variable #%d: Cannot find data type %.*ls.", kEndScope},
    {2716, 16, 1, "Column, parameter, or variable #%d: Cannot specify a column width on data type %.*ls.", kEndScope},
    {2717, 15, 2, "The size (%d) given to the %S_MSG '%.*ls' exceeds the maximum allowed (%d).", kEndScope},
    {2732, 16, 1, "Error number %ld is invalid. The number must be from %ld through %ld and it cannot be 50000.", kNextStatement},
    {2744, 16, 2, "Multiple identity columns specified for table '%.*ls'. Only one identity column per table is allowed.", kEndScope},
    {2749, 16, 2, "Identity column '%.*ls' must be of data type int, bigint, smallint, tinyint, or decimal or numeric with a scale of 0, unencrypted, and constrained to be nonnullable.", kEndScope},
    {2750, 16, 1, "Column or parameter #%d: Specified column precision %d is greater than the maximum precision of %d.", kEndScope},
    {2753, 16, 2, "Identity column '%.*ls' contains invalid INCREMENT.", kEndScope},
    {2760, 16, 1, "The specified schema name \"%.*ls\" either does not exist or you do not have permission to use it.", kEndScope},
    {2787, 16, 1, "Invalid format specification: '%.*ls'.", kNextStatement},
    {2812, 16, 62, "Could not find stored procedure '%.*ls'.", kNextStatement},
    {3623, 16, 1, "An invalid floating point operation occurred.", kNextStatement},
    {3701, 11, 5, "Cannot %S_MSG the %S_MSG '%.*ls', because it does not exist or you do not have permission.", kNextStatement},
    {3705, 16, 1, "Cannot use DROP %ls with '%.*ls' because '%.*ls' is a %S_MSG. Use %ls.", kNextStatement},
    {3902, 16, 1, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.", kNextStatement},
    {3903, 16, 1, "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.", kNextStatement},
    {3960, 16, 2, "Snapshot isolation transaction aborted due to update conflict. You cannot use snapshot isolation to access tables in database '%.*ls' that another process has changed since the transaction began. Retry the transaction.", kEndTransaction},
    {4104, 16, 1, "The multi-part identifier \"%.*ls\" could not be bound.", kEndScope},
    {4108, 15, 1, "Windowed functions can only appear in the SELECT or ORDER BY clauses.", kEndScope},
    {4109, 15, 1, "Windowed functions cannot be used in the context of another windowed function or aggregate.", kEndScope},
    {4112, 15, 1, "The function '%.*ls' must have an OVER clause with ORDER BY.", kEndScope},
    {4113, 15, 1, "The function '%.*ls' is not a valid windowing function, and cannot be used with the OVER clause.", kEndScope},
    {4116, 16, 1, "The function 'ntile' takes only a positive int or bigint expression as its input.", kNextStatement},
    {4121, 16, 1, "Cannot find either column \"%.*ls\" or the user-defined function or aggregate \"%.*ls\", or the name is ambiguous.", kEndScope},
    {4127, 16, 1, "At least one of the arguments to COALESCE must be an expression that is not the NULL constant.", kEndScope},
    {4145, 15, 1, "An expression of non-boolean type specified in a context where a condition is expected, near '%.*ls'.", kEndScope},
    {4151, 16, 1, "The type of the first argument to NULLIF cannot be the NULL constant because the type of the first argument has to be known.", kEndScope},
    {4193, 16, 1, "'BETWEEN ... FOLLOWING AND ... PRECEDING' is not a valid window frame and cannot be used with the OVER clause.", kEndScope},
    {4194, 16, 1, "RANGE is only supported with UNBOUNDED and CURRENT ROW window frame delimiters.", kEndScope},
    {4403, 16, 1, "Cannot update the view or function '%.*ls' because it contains aggregates, or a DISTINCT or GROUP BY clause, or PIVOT or UNPIVOT operator.", kEndScope},
    {4405, 16, 1, "View or function '%.*ls' is not updatable because the modification affects multiple base tables.", kEndScope},
    {4406, 16, 1, "Update or insert of view or function '%.*ls' failed because it contains a derived or constant field.", kEndScope},
    {4417, 16, 1, "Derived table '%.*ls' is not updatable because the definition contains a UNION operator.", kEndScope},
    {4418, 16, 1, "Derived table '%.*ls' is not updatable because it contains aggregates, or a DISTINCT or GROUP BY clause, or PIVOT or UNPIVOT operator.", kEndScope},
    {4420, 16, 1, "Derived table '%.*ls' is not updatable because the modification affects multiple base tables.", kEndScope},
    {4421, 16, 1, "Derived table '%.*ls' is not updatable because a column of the derived table is derived or constant.", kEndScope},
    {4426, 16, 1, "View '%.*ls' is not updatable because the definition contains a UNION operator.", kEndScope},
    {4511, 16, 1, "Create View or Function failed because no column name was specified for column %d.", kEndScope},
    {4701, 16, 1, "Cannot find the object \"%.*ls\" because it does not exist or you do not have permissions.", kEndScope},
    {4902, 16, 1, "Cannot find the object \"%.*ls\" because it does not exist or you do not have permissions.", kEndScope},
    {5308, 16, 1, "Windowed functions, aggregates and NEXT VALUE FOR functions do not support integer indices as ORDER BY clause expressions.", kEndScope},
    {5309, 16, 1, "Windowed functions, aggregates and NEXT VALUE FOR functions do not support constants as ORDER BY clause expressions.", kEndScope},
    {5312, 16, 1, "The input to the function 'ntile' cannot be bound.", kEndScope},
    {6401, 16, 1, "Cannot roll back %.*ls. No transaction or savepoint of that name was found.", kNextStatement},
    {8101, 16, 1, "An explicit value for the identity column in table '%.*ls' can only be specified when a column list is used and IDENTITY_INSERT is ON.", kNextStatement},
    {8102, 16, 1, "Cannot update identity column '%.*ls'.", kEndScope},
    {8106, 16, 1, "Table '%.*ls' does not have the identity property. Cannot perform SET operation.", kNextStatement},
    {8107, 16, 1, "IDENTITY_INSERT is already ON for table '%.*ls.%.*ls.%.*ls'. Cannot perform SET operation for table '%.*ls'.", kNextStatement},
    {8110, 16, 0, "Cannot add multiple PRIMARY KEY constraints to table '%.*ls'.", kEndScope},
    {8111, 16, 1, "Cannot define PRIMARY KEY constraint on nullable column in table '%.*ls'.", kEndScope},
    {8114, 16, 5, "Error converting data type %ls to %ls.", kEndTransaction},
    {8115, 16, 2, "Arithmetic overflow error converting %ls to data type %ls.", kNextStatement},
    {8116, 16, 1, "Argument data type %ls is invalid for argument %d of %ls function.", kEndScope},
    {8117, 16, 1, "Operand data type %ls is invalid for %ls operator.", kEndScope},
    {8120, 16, 1, "Column '%.*ls.%.*ls' is invalid in the select list because it is not contained in either an aggregate function or the GROUP BY clause.", kEndScope},
    {8121, 16, 1, "Column '%.*ls.%.*ls' is invalid in the HAVING clause because it is not contained in either an aggregate function or the GROUP BY clause.", kEndScope},
    {8127, 16, 1, "Column \"%.*ls.%.*ls\" is invalid in the ORDER BY clause because it is not contained in either an aggregate function or the GROUP BY clause.", kEndScope},
    {8133, 16, 1, "At least one of the result expressions in a CASE specification must be an expression other than the NULL constant.", kEndScope},
    {8134, 16, 1, "Divide by zero error encountered.", kNextStatement},
    {8143, 16, 1, "Parameter '%.*ls' was supplied multiple times.", kNextStatement},
    {8144, 16, 2, "Procedure or function %.*ls has too many arguments specified.", kNextStatement},
    {8145, 16, 1, "%.*ls is not a parameter for procedure %.*ls.", kNextStatement},
    {8146, 16, 2, "Procedure %.*ls has no parameters and arguments were supplied.", kEndTransaction},
    {8147, 16, 1, "Could not create IDENTITY attribute on nullable column '%.*ls', table '%.*ls'.", kEndScope},
    {8151, 16, 0, "Both a PRIMARY KEY and UNIQUE constraint have been defined for column '%.*ls', table '%.*ls'. Only one is allowed.", kEndScope},
    {8152, 16, 14, "String or binary data would be truncated.", kNextStatement},
    {8154, 15, 1, "The table '%.*ls' is ambiguous.", kEndScope},
    {8155, 16, 2, "No column name was specified for column %d of '%.*ls'.", kEndScope},
    {8156, 16, 1, "The column '%.*ls' was specified multiple times for '%.*ls'.", kEndScope},
    {8158, 16, 1, "'%.*ls' has more columns than were specified in the column list.", kEndScope},
    {8159, 16, 1, "'%.*ls' has fewer columns than were specified in the column list.", kEndScope},
    {8162, 16, 2, "The formal parameter \"%.*ls\" was not declared as an OUTPUT parameter, but the actual parameter passed in requested output.", kNextStatement},
    {8164, 16, 1, "An INSERT EXEC statement cannot be nested.", kNextStatement},
    {8169, 16, 2, "Conversion failed when converting from a character string to uniqueidentifier.", kEndTransaction},
    {8632, 17, 2, "Internal error: An expression services limit has been reached. Please look for potentially complex expressions in your query, and try to simplify them.", kEndScope},
    {8730, 16, 1, "Offset parameter for Lag and Lead functions cannot be a negative value.", kNextStatement},
    {9810, 16, 1, "The datepart %.*ls is not supported by date function %.*ls for data type %.*ls.", kEndScope},
    {10738, 15, 1, "The number of row value expressions in the INSERT statement exceeds the maximum allowed number of 1000 row values.", kEndScope},
    {10752, 15, 1, "The function '%.*ls' may not have a window frame.", kEndScope},
    {10753, 15, 1, "The function '%.*ls' must have an OVER clause.", kEndScope},
    {10755, 15, 1, "The function '%.*ls' takes between %d and %d arguments.", kEndScope},
    {10756, 15, 1, "Window frame with ROWS or RANGE must have an ORDER BY clause.", kEndScope},
    {10759, 15, 1, "Use of DISTINCT is not allowed with the OVER clause.", kEndScope},
    {16905, 16, 1, "The cursor is already open.", kNextStatement},
    {16911, 16, 1, "%hs: The fetch type %hs cannot be used with forward only cursors.", kNextStatement},
    {16915, 16, 1, "A cursor with the name '%.*ls' already exists.", kNextStatement},
    {16916, 16, 1, "A cursor with the name '%.*ls' does not exist.", kNextStatement},
    {16917, 16, 2, "Cursor is not open.", kNextStatement},
    {16924, 16, 1, "Cursorfetch: The number of variables declared in the INTO list must match that of selected columns.", kNextStatement},
    {16925, 16, 1, "The fetch type %hs cannot be used with dynamic cursors.", kNextStatement},
    {16929, 16, 1, "The cursor is READ ONLY.", kNextStatement},
    {16931, 16, 1, "There are no rows in the current fetch buffer.", kNextStatement},
    {16933, 16, 1, "The cursor does not include the table being modified or the table is not updatable through the cursor.", kNextStatement},
    // Our own.
    {kNotSupported, 16, 1, "Not supported by the embedded database: %s.", kEndScope},
});
// clang-format on

static_assert(std::ranges::is_sorted(kErrors, {}, &ErrorDefinition::number));

// The length of the argument mark that `text` begins with, e.g. 5 for "%.*ls", "%S_MSG"; 0 when it
// begins with none.
size_t MarkLength(std::string_view text) {
  for (const std::string_view mark :
       {"%.*ls", "%.*s", "%S_MSG", "%ls", "%hs", "%ld", "%s", "%d", "%i", "%f"}) {
    if (text.starts_with(mark)) return mark.size();
  }
  return 0;
}

std::string FillIn(std::string_view text, std::initializer_list<ErrorArgument> arguments) {
  std::string out;
  auto argument = arguments.begin();
  while (!text.empty()) {
    const size_t mark = text.front() == '%' ? MarkLength(text) : 0;
    if (mark == 0) {
      const size_t next = std::min(text.find('%', 1), text.size());
      out.append(text.substr(0, next));
      text.remove_prefix(next);
      continue;
    }
    if (argument != arguments.end()) out.append((argument++)->text());
    text.remove_prefix(mark);
  }
  return out;
}

}  // namespace

std::span<const ErrorDefinition> AllErrors() {
  return kErrors;
}

const ErrorDefinition* FindError(int number) {
  const auto found = std::ranges::lower_bound(kErrors, number, {}, &ErrorDefinition::number);
  return found != kErrors.end() && found->number == number ? &*found : nullptr;
}

AfterError WhatFollows(int number) {
  const ErrorDefinition* definition = FindError(number);
  return definition != nullptr ? definition->after : kNextStatement;
}

SqlError MakeError(int number, std::initializer_list<ErrorArgument> arguments) {
  const ErrorDefinition* definition = FindError(number);
  if (definition == nullptr) return MakeError(kNotSupported, {"error " + std::to_string(number)});
  return SqlError{number, definition->severity, definition->state, 0,
                  FillIn(definition->text, arguments)};
}

SqlError StoreFailure(std::string message) {
  return SqlError{kStoreFailure, 16, 1, 0, std::move(message)};
}

void RaiseUnsupported(std::string_view construct) {
  Raise(kNotSupported, construct);
}

}  // namespace tavcc::sql
