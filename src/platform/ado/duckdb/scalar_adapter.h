#pragma once

#include <array>
#include <cstdint>
#include <duckdb.h>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/ado/duckdb/engine.h"
#include "velmora/collections/date.h"

/// Lets the engine call C++ functions of plain values, row by row: each argument is
/// evaluated once, however often the function looks at it.
namespace velmora::ado::embedded {

/// How a C++ type stands in the engine's vectors.
template <class Value>
struct EngineValue;

template <class Value, duckdb_type Type>
struct PlainEngineValue {
  static constexpr duckdb_type kType = Type;
  static Value read(duckdb_vector vector, idx_t row) {
    return static_cast<const Value*>(duckdb_vector_get_data(vector))[row];
  }
  static void write(duckdb_vector vector, idx_t row, Value value) {
    static_cast<Value*>(duckdb_vector_get_data(vector))[row] = value;
  }
};

template <>
struct EngineValue<bool> : PlainEngineValue<bool, DUCKDB_TYPE_BOOLEAN> {};
template <>
struct EngineValue<std::int32_t> : PlainEngineValue<std::int32_t, DUCKDB_TYPE_INTEGER> {};
template <>
struct EngineValue<std::int64_t> : PlainEngineValue<std::int64_t, DUCKDB_TYPE_BIGINT> {};
template <>
struct EngineValue<float> : PlainEngineValue<float, DUCKDB_TYPE_FLOAT> {};
template <>
struct EngineValue<double> : PlainEngineValue<double, DUCKDB_TYPE_DOUBLE> {};
/// Both count microseconds from 1970.
template <>
struct EngineValue<collections::Date> {
  static constexpr duckdb_type kType = DUCKDB_TYPE_TIMESTAMP;
  static collections::Date read(duckdb_vector vector, idx_t row) {
    return collections::Date::fromMicroseconds(
        static_cast<const std::int64_t*>(duckdb_vector_get_data(vector))[row]);
  }
  static void write(duckdb_vector vector, idx_t row, collections::Date value) {
    static_cast<std::int64_t*>(duckdb_vector_get_data(vector))[row] = value.microseconds();
  }
};

template <>
struct EngineValue<std::string_view> {
  static constexpr duckdb_type kType = DUCKDB_TYPE_VARCHAR;
  static std::string_view read(duckdb_vector vector, idx_t row) {
    auto& text = static_cast<duckdb_string_t*>(duckdb_vector_get_data(vector))[row];
    return {duckdb_string_t_data(&text), duckdb_string_t_length(text)};
  }
  static void write(duckdb_vector vector, idx_t row, std::string_view text) {
    duckdb_vector_assign_string_element_len(vector, row, text.data(), text.size());
  }
};

/// A result may be a text of its own, or absent (NULL).
template <class Value>
struct ResultOf {
  using Type = Value;
};
template <>
struct ResultOf<std::string> {
  using Type = std::string_view;
};
template <class Value>
struct ResultOf<std::optional<Value>> : ResultOf<Value> {};

template <auto Function>
class ScalarAdapter;

/// NULL in, NULL out. What the function throws is the statement's error, its text as it is.
template <class Result, class... Arguments, Result (*Function)(Arguments...)>
class ScalarAdapter<Function> {
  using Written = EngineValue<typename ResultOf<Result>::Type>;

 public:
  static void makeKnown(duckdb_connection connection, const char* name) {
    const ScalarFunction function(duckdb_create_scalar_function());
    duckdb_scalar_function_set_name(function.get(), name);
    for (const duckdb_type type : std::array{EngineValue<Arguments>::kType...})
      duckdb_scalar_function_add_parameter(function.get(), typeOf(type).get());
    duckdb_scalar_function_set_return_type(function.get(), typeOf(Written::kType).get());
    duckdb_scalar_function_set_function(function.get(), run);
    duckdb_register_scalar_function(connection, function.get());
  }

 private:
  static LogicalType typeOf(duckdb_type type) {
    return LogicalType(duckdb_create_logical_type(type));
  }

  static void run(duckdb_function_info info, duckdb_data_chunk input, duckdb_vector output) {
    try {
      const idx_t rows = duckdb_data_chunk_get_size(input);
      for (idx_t row = 0; row < rows; ++row)
        runRow(input, output, row, std::index_sequence_for<Arguments...>());
    } catch (const std::exception& error) {
      duckdb_scalar_function_set_error(info, error.what());
    }
  }

  template <std::size_t... Index>
  static void runRow(duckdb_data_chunk input, duckdb_vector output, idx_t row,
                     std::index_sequence<Index...>) {
    const std::array vectors{duckdb_data_chunk_get_vector(input, Index)...};
    if ((isNull(vectors[Index], row) || ...)) return writeNull(output, row);
    write(output, row, Function(EngineValue<Arguments>::read(vectors[Index], row)...));
  }

  static bool isNull(duckdb_vector vector, idx_t row) {
    auto* validity = duckdb_vector_get_validity(vector);
    return validity != nullptr && !duckdb_validity_row_is_valid(validity, row);
  }

  static void write(duckdb_vector output, idx_t row, const auto& result) {
    if constexpr (requires { result.has_value(); }) {
      if (!result) return writeNull(output, row);
      Written::write(output, row, *result);
    } else {
      Written::write(output, row, result);
    }
  }

  static void writeNull(duckdb_vector output, idx_t row) {
    duckdb_vector_ensure_validity_writable(output);
    duckdb_validity_set_row_invalid(duckdb_vector_get_validity(output), row);
  }
};

}  // namespace velmora::ado::embedded
