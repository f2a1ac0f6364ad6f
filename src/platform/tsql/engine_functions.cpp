#include "platform/tsql/engine_functions.h"

namespace velmora::tsql {

std::string DecimalFunction::name() const {
  return std::string(operation == Operation::divide ? "velmora_div_" : "velmora_mul_") +
         std::to_string(leftScale) + "_" + std::to_string(rightScale) + "_" +
         std::to_string(resultScale);
}

std::string_view engineSetupSql() {
  return R"sql(
CREATE OR REPLACE TEMP MACRO velmora_quotient(a, b) AS
  CASE WHEN b = 0 THEN error('8134: Divide by zero error encountered.') ELSE a // b END;
CREATE OR REPLACE TEMP MACRO velmora_remainder(a, b) AS
  CASE WHEN b = 0 THEN error('8134: Divide by zero error encountered.') ELSE a % b END;
CREATE OR REPLACE TEMP MACRO velmora_ratio(a, b) AS
  CASE WHEN b = 0 THEN error('8134: Divide by zero error encountered.') ELSE a / b END;
CREATE OR REPLACE TEMP MACRO velmora_text_to_integer(x, target) AS
  CASE WHEN regexp_full_match(trim(x), '[+-]?[0-9]+') THEN trim(x)
       WHEN trim(x) = '' THEN '0'
       WHEN x IS NOT NULL THEN
         error('245: Conversion failed when converting the text value ''' || x ||
               ''' to data type ' || target || '.') END;
CREATE OR REPLACE TEMP MACRO velmora_text_to_bit(x) AS
  CASE WHEN lower(trim(x)) = 'true' THEN 1
       WHEN lower(trim(x)) = 'false' THEN 0
       ELSE CAST(CAST(velmora_text_to_integer(x, 'bit') AS BIGINT) <> 0 AS INTEGER) END;
CREATE OR REPLACE TEMP MACRO velmora_text_to_decimal(x, target) AS
  CASE WHEN regexp_full_match(trim(x), '[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)') THEN trim(x)
       WHEN x IS NOT NULL THEN
         error('8114: Error converting the text value ''' || x || ''' to data type ' ||
               target || '.') END;
CREATE OR REPLACE TEMP MACRO velmora_text_to_float(x, target) AS
  CASE WHEN trim(x) = '' THEN 0
       WHEN try_cast(trim(x) AS DOUBLE) IS NOT NULL THEN try_cast(trim(x) AS DOUBLE)
       WHEN x IS NOT NULL THEN
         error('8114: Error converting the text value ''' || x || ''' to data type ' ||
               target || '.') END;
CREATE OR REPLACE TEMP MACRO velmora_try_datetime(x) AS
  try_strptime(trim(x),
    ['%Y-%m-%d', '%Y/%m/%d', '%Y%m%d', '%Y-%m-%d %H:%M', '%Y/%m/%d %H:%M', '%Y%m%d %H:%M',
     '%Y-%m-%d %H:%M:%S', '%Y/%m/%d %H:%M:%S', '%Y%m%d %H:%M:%S', '%Y-%m-%d %H:%M:%S.%f',
     '%Y/%m/%d %H:%M:%S.%f', '%Y%m%d %H:%M:%S.%f', '%Y-%m-%dT%H:%M:%S',
     '%Y-%m-%dT%H:%M:%S.%f']);
CREATE OR REPLACE TEMP MACRO velmora_text_to_datetime(x) AS
  CASE WHEN trim(x) = '' THEN TIMESTAMP '1900-01-01'
       WHEN velmora_try_datetime(x) IS NOT NULL THEN velmora_try_datetime(x)
       WHEN x IS NOT NULL THEN
         error('241: Conversion failed when converting date and/or time from character string '''
               || x || '''.') END;
CREATE OR REPLACE TEMP MACRO velmora_fit(x, size, name) AS
  CASE WHEN length(x) <= size THEN x
       WHEN length(rtrim(x)) <= size THEN left(x, size)
       WHEN x IS NOT NULL THEN
         error('8152: String or binary data would be truncated: ' || name || ' takes ' || size ||
               ' characters, not ''' || x || '''.') END;
CREATE OR REPLACE TEMP MACRO velmora_length(n) AS
  CASE WHEN n < 0 THEN
         error('537: Invalid length parameter ' || n || ' passed to the LEFT or SUBSTRING function.')
       ELSE n END;
CREATE OR REPLACE TEMP MACRO velmora_substring(x, start, n) AS
  substring(x, start + greatest(1 - start, 0),
            CASE WHEN velmora_length(n) + least(start - 1, 0) < 0 THEN 0
                 ELSE n + least(start - 1, 0) END);
CREATE OR REPLACE TEMP MACRO velmora_position(x, wanted, start) AS
  CASE WHEN strpos(substring(x, greatest(start, 1)), wanted) = 0 THEN 0
       ELSE strpos(substring(x, greatest(start, 1)), wanted) + greatest(start, 1) - 1 END;
CREATE OR REPLACE TEMP MACRO velmora_replace(x, wanted, other) AS
  CASE WHEN wanted = '' THEN x
       ELSE regexp_replace(x, regexp_escape(wanted), replace(other, '\', '\\'), 'gi') END;
CREATE OR REPLACE TEMP MACRO velmora_like_pattern(pattern) AS
  CASE WHEN contains(pattern, '[') THEN
         error('Not supported: LIKE with a computed pattern that holds a bracket')
       ELSE lower(pattern) END;
-- A week begins on Sunday, the engine's on Monday.
CREATE OR REPLACE TEMP MACRO velmora_weeks(a, b) AS
  date_diff('day', date_trunc('week', CAST(a AS TIMESTAMP) + to_days(1)),
            date_trunc('week', CAST(b AS TIMESTAMP) + to_days(1))) // 7;
CREATE OR REPLACE TEMP MACRO velmora_now() AS current_localtimestamp();
)sql";
}

}  // namespace velmora::tsql
