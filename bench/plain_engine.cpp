#include "plain_engine.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velmora::bench {

namespace {

/// Copies the texts of a column out of a chunk; other cells are plain memory.
std::size_t takeColumn(duckdb_vector vector, idx_t rows, std::vector<std::string>& texts) {
  duckdb_logical_type type = duckdb_vector_get_column_type(vector);
  const bool isText = duckdb_get_type_id(type) == DUCKDB_TYPE_VARCHAR;
  duckdb_destroy_logical_type(&type);
  if (!isText) return rows;
  auto* values = static_cast<duckdb_string_t*>(duckdb_vector_get_data(vector));
  std::uint64_t* valid = duckdb_vector_get_validity(vector);
  for (idx_t row = 0; row < rows; ++row)
    if (duckdb_validity_row_is_valid(valid, row))
      texts.emplace_back(duckdb_string_t_data(&values[row]), duckdb_string_t_length(values[row]));
  return rows;
}

}  // namespace

PlainEngine::PlainEngine(const std::string& file, Mode mode) {
  duckdb_config config = nullptr;
  duckdb_create_config(&config);
  duckdb_set_config(config, "access_mode", mode == Mode::read ? "READ_ONLY" : "READ_WRITE");
  char* error = nullptr;
  if (duckdb_open_ext(file.c_str(), &database_, config, &error) == DuckDBError)
    throw std::runtime_error(error);
  duckdb_destroy_config(&config);
  duckdb_connect(database_, &connection_);
}

PlainEngine::~PlainEngine() {
  duckdb_disconnect(&connection_);
  duckdb_close(&database_);
}

std::size_t PlainEngine::run(const std::string& sql) const {
  duckdb_result result = execute(sql);
  std::vector<std::string> texts;
  std::size_t cells = 0;
  while (duckdb_data_chunk chunk = duckdb_fetch_chunk(result)) {
    const idx_t rows = duckdb_data_chunk_get_size(chunk);
    for (idx_t column = 0; column < duckdb_data_chunk_get_column_count(chunk); ++column)
      cells += takeColumn(duckdb_data_chunk_get_vector(chunk, column), rows, texts);
    duckdb_destroy_data_chunk(&chunk);
  }
  duckdb_destroy_result(&result);
  return cells;
}

std::vector<std::string> PlainEngine::texts(const std::string& sql) const {
  duckdb_result result = execute(sql);
  std::vector<std::string> values;
  for (idx_t row = 0; row < duckdb_row_count(&result); ++row) {
    char* text = duckdb_value_varchar(&result, 0, row);
    values.emplace_back(text == nullptr ? "" : text);
    duckdb_free(text);
  }
  duckdb_destroy_result(&result);
  return values;
}

duckdb_result PlainEngine::execute(const std::string& sql) const {
  duckdb_result result;
  if (duckdb_query(connection_, sql.c_str(), &result) == DuckDBError)
    throw std::runtime_error(duckdb_result_error(&result));
  return result;
}

std::string handWritten(const std::string& name,
                        const std::vector<std::pair<std::string, std::string>>& values) {
  std::ifstream file(std::string(VELMORA_QUERIES) + '/' + name);
  if (!file) throw std::runtime_error("there is no hand-written query " + name);
  std::string sql{std::istreambuf_iterator<char>(file), {}};
  for (const auto& [mark, value] : values)
    for (std::size_t at = 0; (at = sql.find(mark, at)) != std::string::npos; at += value.size())
      sql.replace(at, mark.size(), value);
  return sql;
}

}  // namespace velmora::bench
