// The words of the dialect that a name may not be, and those that name a type.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavcc::sql {

// The reserved words, as the reference of Transact-SQL lists them ("Reserved keywords").
#define TAVCC_SQL_RESERVED_WORDS(X)                                                                      \
  X(ADD)                                                                                                 \
  X(ALL) X(ALTER) X(AND) X(ANY) X(AS) X(ASC) X(AUTHORIZATION) X(BACKUP) X(BEGIN) X(BETWEEN) X(           \
      BREAK) X(BROWSE) X(BULK) X(BY) X(CASCADE) X(CASE) X(CHECK) X(CHECKPOINT) X(CLOSE)                  \
      X(CLUSTERED) X(COALESCE) X(COLLATE) X(COLUMN) X(COMMIT) X(COMPUTE) X(CONSTRAINT) X(                \
          CONTAINS) X(CONTAINSTABLE) X(CONTINUE) X(CONVERT) X(CREATE) X(CROSS) X(CURRENT)                \
          X(CURRENT_DATE) X(CURRENT_TIME) X(CURRENT_TIMESTAMP) X(CURRENT_USER) X(CURSOR) X(              \
              DATABASE) X(DBCC) X(DEALLOCATE) X(DECLARE) X(DEFAULT) X(DELETE) X(DENY) X(DESC)            \
              X(DISK) X(DISTINCT) X(DISTRIBUTED) X(DOUBLE) X(DROP) X(DUMP) X(ELSE) X(                    \
                  END) X(ERRLVL) X(ESCAPE) X(EXCEPT) X(EXEC) X(EXECUTE) X(EXISTS) X(EXIT) X(EXTERNAL)    \
                  X(FETCH) X(FILE) X(FILLFACTOR) X(FOR) X(FOREIGN) X(FREETEXT) X(                        \
                      FREETEXTTABLE) X(FROM) X(FULL) X(FUNCTION) X(GOTO) X(GRANT) X(GROUP)               \
                      X(HAVING) X(HOLDLOCK) X(IDENTITY) X(IDENTITY_INSERT) X(IDENTITYCOL) X(IF) X(       \
                          IN) X(INDEX) X(INNER) X(INSERT)                                                \
                          X(INTERSECT) X(INTO) X(IS) X(JOIN) X(KEY) X(KILL) X(LEFT) X(LIKE) X(           \
                              LINENO) X(LOAD) X(MERGE) X(NATIONAL) X(NOCHECK) X(NONCLUSTERED)            \
                              X(NOT) X(NULL) X(NULLIF) X(OF) X(OFF) X(OFFSETS) X(ON) X(OPEN) X(          \
                                  OPENDATASOURCE) X(OPENQUERY)                                           \
                                  X(OPENROWSET) X(OPENXML) X(OPTION) X(OR) X(ORDER) X(OUTER) X(          \
                                      OVER) X(PERCENT)                                                   \
                                      X(PIVOT) X(PLAN) X(PRECISION) X(PRIMARY) X(PRINT) X(PROC) X(       \
                                          PROCEDURE) X(PUBLIC)                                           \
                                          X(RAISERROR) X(READ) X(READTEXT) X(                            \
                                              RECONFIGURE) X(REFERENCES) X(REPLICATION)                  \
                                              X(RESTORE) X(RESTRICT) X(RETURN) X(REVERT) X(              \
                                                  REVOKE) X(RIGHT) X(ROLLBACK) X(ROWCOUNT)               \
                                                  X(ROWGUIDCOL) X(RULE) X(SAVE) X(SCHEMA) X(             \
                                                      SECURITYAUDIT) X(SELECT) X(SEMANTICKEYPHRASETABLE) \
                                                      X(SEMANTICSIMILARITYDETAILSTABLE) X(               \
                                                          SEMANTICSIMILARITYTABLE) X(SESSION_USER)       \
                                                          X(SET) X(SETUSER) X(SHUTDOWN) X(SOME) X(       \
                                                              STATISTICS) X(SYSTEM_USER) X(TABLE)        \
                                                              X(TABLESAMPLE) X(TEXTSIZE) X(THEN) X(      \
                                                                  TO) X(TOP) X(TRAN) X(TRANSACTION)      \
                                                                  X(TRIGGER) X(TRUNCATE) X(              \
                                                                      TRY_CONVERT) X(TSEQUAL)            \
                                                                      X(UNION) X(UNIQUE) X(              \
                                                                          UNPIVOT) X(UPDATE)             \
                                                                          X(UPDATETEXT) X(USE) X(        \
                                                                              USER) X(VALUES)            \
                                                                              X(VARYING) X(VIEW) X(      \
                                                                                  WAITFOR) X(WHEN)       \
                                                                                  X(WHERE) X(            \
                                                                                      WHILE) X(WITH)     \
                                                                                      X(WRITETEXT)

enum class Keyword : uint8_t {
  kNone,      // an ordinary word
  kTypeName,  // the name of a type that takes arguments in brackets; may be a name all the same
#define TAVCC_SQL_ENUMERATOR(word) k##word,
  TAVCC_SQL_RESERVED_WORDS(TAVCC_SQL_ENUMERATOR)
#undef TAVCC_SQL_ENUMERATOR
};

constexpr bool IsReserved(Keyword keyword) {
  return keyword > Keyword::kTypeName;
}

// What a bare word is, in any letter case. Only ASCII letters are folded: no keyword has others.
Keyword LookUpKeyword(std::string_view word);

// The keyword in upper case.
std::string_view KeywordText(Keyword keyword);

}  // namespace tavcc::sql
