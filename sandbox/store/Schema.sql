-- The sandbox's data.
CREATE TABLE database (id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, name TEXT NOT NULL);
CREATE TABLE unit (
  id INTEGER PRIMARY KEY, symbol TEXT NOT NULL UNIQUE, name TEXT NOT NULL, dimension TEXT NOT NULL,
  factor REAL NOT NULL, offset REAL NOT NULL, has_currency INTEGER NOT NULL);
CREATE TABLE unit_system (name TEXT PRIMARY KEY);
CREATE TABLE unit_system_unit (
  system TEXT NOT NULL REFERENCES unit_system, dimension TEXT NOT NULL, symbol TEXT NOT NULL,
  PRIMARY KEY (system, dimension));
CREATE TABLE currency (code TEXT PRIMARY KEY, name TEXT NOT NULL, factor REAL NOT NULL);
CREATE TABLE data_table (
  id INTEGER PRIMARY KEY, database_id INTEGER NOT NULL REFERENCES database,
  guid TEXT NOT NULL UNIQUE, name TEXT NOT NULL, UNIQUE (database_id, name));
CREATE TABLE table_filter (
  table_id INTEGER NOT NULL REFERENCES data_table, word TEXT NOT NULL,
  PRIMARY KEY (table_id, word));
CREATE TABLE attribute (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  type TEXT NOT NULL, unit TEXT NOT NULL DEFAULT '', standard_name TEXT NOT NULL DEFAULT '',
  about_id INTEGER REFERENCES attribute, is_multi_valued INTEGER NOT NULL DEFAULT 0,
  is_gridded INTEGER NOT NULL DEFAULT 0, UNIQUE (table_id, name));
CREATE TABLE attribute_discrete (
  attribute_id INTEGER NOT NULL REFERENCES attribute, position INTEGER NOT NULL,
  word TEXT NOT NULL, PRIMARY KEY (attribute_id, position));
CREATE TABLE tabular_column (
  attribute_id INTEGER NOT NULL REFERENCES attribute, position INTEGER NOT NULL,
  name TEXT NOT NULL, type TEXT NOT NULL, unit TEXT NOT NULL, PRIMARY KEY (attribute_id, position));
CREATE TABLE parameter (
  id INTEGER PRIMARY KEY, database_id INTEGER NOT NULL REFERENCES database, name TEXT NOT NULL,
  unit TEXT NOT NULL, type TEXT NOT NULL, scale TEXT NOT NULL, interpolation TEXT NOT NULL,
  UNIQUE (database_id, name));
CREATE TABLE parameter_value (
  parameter_id INTEGER NOT NULL REFERENCES parameter, position INTEGER NOT NULL,
  value TEXT NOT NULL, PRIMARY KEY (parameter_id, position));
CREATE TABLE attribute_parameter (
  attribute_id INTEGER NOT NULL REFERENCES attribute,
  parameter_id INTEGER NOT NULL REFERENCES parameter, PRIMARY KEY (attribute_id, parameter_id));
CREATE TABLE subset (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  UNIQUE (table_id, name));
-- One row per version; the current one stands in the tree.
CREATE TABLE record (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table,
  parent_id INTEGER REFERENCES record, history_id INTEGER, guid TEXT NOT NULL UNIQUE,
  history_guid TEXT NOT NULL, short_name TEXT NOT NULL, long_name TEXT NOT NULL,
  is_folder INTEGER NOT NULL DEFAULT 0, version INTEGER NOT NULL DEFAULT 1,
  state TEXT NOT NULL DEFAULT 'Released', is_current INTEGER NOT NULL DEFAULT 1,
  color TEXT NOT NULL DEFAULT 'Black', created TEXT NOT NULL DEFAULT '2026-01-05T09:00:00',
  created_user TEXT NOT NULL DEFAULT 'seed', modified TEXT NOT NULL DEFAULT '2026-01-05T09:00:00',
  modified_user TEXT NOT NULL DEFAULT 'seed', update_count INTEGER NOT NULL DEFAULT 0);
CREATE INDEX record_by_parent ON record (parent_id);
CREATE INDEX record_by_history ON record (history_id);
CREATE INDEX record_by_name ON record (table_id, short_name);
CREATE TABLE record_subset (
  record_id INTEGER NOT NULL REFERENCES record, subset_id INTEGER NOT NULL REFERENCES subset,
  PRIMARY KEY (record_id, subset_id));
-- The content of the value's element in replies, and what searches look at, in the unit of the
-- attribute.
CREATE TABLE attribute_value (
  record_id INTEGER NOT NULL REFERENCES record, attribute_id INTEGER NOT NULL REFERENCES attribute,
  xml TEXT NOT NULL, low REAL, high REAL, text TEXT NOT NULL DEFAULT '',
  version INTEGER NOT NULL DEFAULT 1, PRIMARY KEY (record_id, attribute_id));
CREATE TABLE record_link_group (
  id INTEGER PRIMARY KEY, from_table_id INTEGER NOT NULL REFERENCES data_table,
  to_table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  reverse_name TEXT NOT NULL, kind TEXT NOT NULL, standard_name TEXT NOT NULL DEFAULT '');
-- Between histories: a link holds for every version.
CREATE TABLE record_link (
  group_id INTEGER NOT NULL REFERENCES record_link_group,
  from_id INTEGER NOT NULL, to_id INTEGER NOT NULL,
  notes TEXT NOT NULL DEFAULT '', reverse_notes TEXT NOT NULL DEFAULT '',
  PRIMARY KEY (group_id, from_id, to_id));
