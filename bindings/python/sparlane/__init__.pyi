# Type stubs of the sparlane package.
import enum
import os
from typing import Iterable, Optional, Union

__version__: str

_Path = Union[str, bytes, os.PathLike]
_Name = Union[str, bytes]

FLAG_DERIVED: int
FLAG_SPEED_CAPPED: int
FLAG_ANGLE_ADJUSTED: int

class ErrorCode(enum.IntEnum):
    SUCCESS = 0
    FILE_NOT_FOUND = 1
    INVALID_MAGIC = 2
    UNSUPPORTED_VERSION = 3
    CORRUPTED_FILE = 4
    INVALID_DATA = 5
    DECOMPRESSION_FAILED = 6
    OUT_OF_MEMORY = 7
    INVALID_PARAMETER = 8
    BUFFER_TOO_SMALL = 10
    CHECKSUM_MISMATCH = 11
    IO_ERROR = 12
    ACCESS_DENIED = 13
    ALREADY_EXISTS = 14
    NOT_LOADED = 15
    COMPRESSION_FAILED = 16

class Compression(enum.IntEnum):
    NONE = 0
    LZ4 = 1
    RESERVED = 2

class QualityLevel(enum.IntEnum):
    PRODUCTION = 0
    STANDARD = 1
    FINE = 2
    PRECISION = 3

class Error(Exception):
    code: ErrorCode
    message: str
    def __init__(self, code: Union[ErrorCode, int], message: str) -> None: ...

class CuttingParameter:
    vendor_id: int
    machine_model_id: int
    material_id: int
    aux_id: int
    thickness_mm: float
    cut_speed_mm_min: float
    cut_height_mm: float
    pierce_height_mm: float
    transfer_height_mm: float
    arc_voltage_v: float
    pierce_time_s: float
    kerf_width_mm: float
    current_amps: int
    reserved_42: bytes
    flags: int
    reserved_52: bytes
    def __init__(
        self,
        *,
        vendor_id: int = ...,
        machine_model_id: int = ...,
        material_id: int = ...,
        aux_id: int = ...,
        thickness_mm: float = ...,
        cut_speed_mm_min: float = ...,
        cut_height_mm: float = ...,
        pierce_height_mm: float = ...,
        transfer_height_mm: float = ...,
        arc_voltage_v: float = ...,
        pierce_time_s: float = ...,
        kerf_width_mm: float = ...,
        current_amps: int = ...,
        reserved_42: bytes = ...,
        flags: int = ...,
        reserved_52: bytes = ...,
    ) -> None: ...
    def to_dict(self) -> dict: ...

class FileHeader:
    magic: int
    version_major: int
    version_minor: int
    created_time: int
    parameter_count: int
    vendor_count: int
    machine_count: int
    material_count: int
    reserved_32: bytes
    vendor_table_offset: int
    machine_table_offset: int
    material_table_offset: int
    reserved_72: bytes
    aux_offset_1: int
    aux_offset_2: int
    reserved_96: bytes
    parameter_data_offset: int
    compression: int
    reserved_113: bytes
    stats_compressed_size: int
    stats_uncompressed_size: int
    reserved_124: bytes
    header_crc32: int
    reserved_132: bytes
    creator: str
    reserved_176: bytes
    def __init__(self, **fields: object) -> None: ...
    @staticmethod
    def from_bytes(data: bytes) -> FileHeader: ...
    def to_bytes(self) -> bytes: ...
    def to_dict(self) -> dict: ...

class InterpolationResult:
    parameter: CuttingParameter
    confidence: float
    extrapolated: bool
    def __init__(self, *, parameter: CuttingParameter = ..., confidence: float = ...,
                 extrapolated: bool = ...) -> None: ...
    def to_dict(self) -> dict: ...

class SupportedThicknessRange:
    min_thickness_mm: float
    max_thickness_mm: float
    parameter_count: int
    valid: bool
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class PerformanceMetrics:
    total_queries: int
    queries_found: int
    queries_not_found: int
    avg_query_time_us: float
    max_query_time_us: float
    min_query_time_us: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class DatabaseStats:
    parameter_count: int
    vendor_count: int
    machine_count: int
    material_count: int
    consumable_set_count: int
    file_size_bytes: int
    uncompressed_size: int
    compression_ratio: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class CutEstimate:
    cut_time_s: float
    pierce_time_total_s: float
    total_time_s: float
    cut_length_mm: float
    pierce_count: int
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class MaterialPricing:
    price_per_kg: float
    density_kg_m3: float
    material_utilization: float
    def __init__(self, *, price_per_kg: float = ..., density_kg_m3: float = ...,
                 material_utilization: float = ...) -> None: ...
    def to_dict(self) -> dict: ...

class JobCost:
    material_cost: float
    consumable_cost: float
    machine_cost: float
    overhead_cost: float
    total_cost: float
    cost_per_meter: float
    cost_per_pierce: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class ConsumableUsage:
    usage_id: int
    starts: int
    arc_hours: float
    stress_factor_1: float
    stress_factor_2: float
    stress_factor_3: float
    stress_factor_4: float
    def __init__(self, *, usage_id: int = ..., starts: int = ..., arc_hours: float = ...,
                 stress_factor_1: float = ..., stress_factor_2: float = ...,
                 stress_factor_3: float = ..., stress_factor_4: float = ...) -> None: ...
    def to_dict(self) -> dict: ...

class ConsumableLife:
    primary_life_pct: float
    secondary_life_pct: float
    tertiary_life_pct: float
    primary_starts_left: int
    secondary_starts_left: int
    primary_hours_left: float
    secondary_hours_left: float
    primary_replace_soon: bool
    secondary_replace_soon: bool
    tertiary_replace_soon: bool
    life_flag_reserved: bool
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class ConsumableSet:
    set_id: int
    rated_current_amps: int
    description: str
    nozzle_part: str
    electrode_part: str
    shield_part: str
    swirl_ring_part: str
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class KerfCompensation:
    offset_mm: float
    kerf_width_mm: float
    is_inside: bool
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class LeadInOut:
    lead_in_length_mm: float
    lead_out_length_mm: float
    lead_in_angle_deg: float
    lead_in_radius_mm: float
    lead_out_radius_mm: float
    lead_out_angle_deg: float
    use_arc_lead_in: bool
    use_lead_out: bool
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class CornerSlowdown:
    speed_factor: float
    decel_distance_mm: float
    slow_zone_mm: float
    accel_distance_mm: float
    sharp_corner: bool
    sharp_corner_extension_mm: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class SmallHoleParams:
    speed_factor: float
    current_factor: float
    min_diameter_mm: float
    small_hole: bool
    very_small_hole: bool
    hole_flag_reserved: bool
    lead_in_max_mm: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class PartSpacing:
    min_spacing_mm: float
    sheet_edge_margin_mm: float
    base_gap_mm: float
    kerf_width_mm: float
    recommended_spacing_mm: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class CommonLineRules:
    allowed: bool
    max_thickness_mm: float
    min_segment_length_mm: float
    line_spacing_mm: float
    requires_tabs: bool
    tab_width_mm: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class EdgeQualityProfile:
    level: Union[QualityLevel, int]
    speed_factor: float
    current_factor: float
    surface_roughness_um: float
    tolerance_mm: float
    max_bevel_deg: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class HeatAffectedZone:
    haz_width_mm: float
    inner_zone_mm: float
    outer_zone_mm: float
    high_heat_input: bool
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class BevelLimits:
    max_bevel_angle_deg: float
    max_land_height_mm: float
    recommended_angle_deg: float
    bevel_supported: bool
    thick_plate: bool
    very_thick_plate: bool
    angle_speed_coefficient: float
    def __init__(self, **fields: object) -> None: ...
    def to_dict(self) -> dict: ...

class Database:
    def __init__(self) -> None: ...
    def __enter__(self) -> Database: ...
    def __exit__(self, *exc: object) -> bool: ...
    # lifecycle and files; failures raise Error
    def create(self) -> None: ...
    def close(self) -> None: ...
    def is_loaded(self) -> bool: ...
    def last_error(self) -> str: ...
    def load(self, path: _Path) -> None: ...
    def import_sqlite(self, path: _Path) -> None: ...
    def save(self, path: _Path, compression: Union[Compression, int] = ...) -> None: ...
    def export_csv(self, path: _Path) -> None: ...
    def export_json(self, path: _Path) -> None: ...
    # queries: None or empty results instead of errors
    def find_exact(self, material: _Name, thickness: float, machine_model: _Name,
                   tolerance: float = 0.001) -> Optional[CuttingParameter]: ...
    def find_nearest(self, material: _Name, thickness: float,
                     machine_model: _Name) -> Optional[CuttingParameter]: ...
    def find_by_machine(self, vendor: _Name, machine_model: _Name) -> list[CuttingParameter]: ...
    def find_by_material(self, material: _Name) -> list[CuttingParameter]: ...
    def supported_thickness_range(self, material: _Name,
                                  machine_model: _Name = "") -> SupportedThicknessRange: ...
    def interpolate(self, material: _Name, thickness: float,
                    machine_model: _Name) -> InterpolationResult: ...
    def find_optimal(self, material: _Name, thickness: float,
                     tolerance: float = 0.001) -> Optional[CuttingParameter]: ...
    def adjust_for_max_speed(self, base: CuttingParameter,
                             max_speed: float) -> CuttingParameter: ...
    # logging and metrics
    def set_query_logging(self, enabled: bool) -> None: ...
    def performance_metrics(self) -> PerformanceMetrics: ...
    def reset_performance_metrics(self) -> None: ...
    # integrity
    def validate(self) -> None: ...
    # editing
    def add_parameter(self, param: CuttingParameter) -> None: ...
    def update_parameter(self, id: int, param: CuttingParameter) -> None: ...
    def delete_parameter(self, id: int) -> None: ...
    def add_machine(self, vendor: _Name, model: _Name, unused: _Name = "") -> None: ...
    def add_material(self, name: _Name) -> None: ...
    # catalogue
    def vendors(self) -> list[str]: ...
    def machines(self) -> list[str]: ...
    def materials(self) -> list[str]: ...
    def statistics(self) -> DatabaseStats: ...
    def consumable_set(self, set_id: int) -> Optional[ConsumableSet]: ...

def calculate_effective_thickness(thickness: float, angle_degrees: float) -> float: ...
def estimate_cut_time(param: CuttingParameter, cut_length_mm: float,
                      pierce_count: int) -> CutEstimate: ...
def estimate_job_cost(param: CuttingParameter, cut_length_mm: float, pierce_count: int,
                      pricing: MaterialPricing, machine_rate_per_hour: float,
                      consumable_set_price: float) -> JobCost: ...
def estimate_consumable_life(usage: ConsumableUsage, current_amps: int) -> ConsumableLife: ...
def calculate_kerf_compensation(param: CuttingParameter, is_inside: bool) -> KerfCompensation: ...
def calculate_lead_in_out(param: CuttingParameter, limit_to_thickness: bool) -> LeadInOut: ...
def calculate_corner_slowdown(param: CuttingParameter,
                              corner_angle_deg: float) -> CornerSlowdown: ...
def small_hole_params(param: CuttingParameter, hole_diameter_mm: float) -> SmallHoleParams: ...
def calculate_part_spacing(param: CuttingParameter) -> PartSpacing: ...
def common_line_rules(param: CuttingParameter) -> CommonLineRules: ...
def quality_profile(param: CuttingParameter,
                    level: Union[QualityLevel, int]) -> EdgeQualityProfile: ...
def calculate_haz(param: CuttingParameter) -> HeatAffectedZone: ...
def bevel_limits(param: CuttingParameter, name: _Name = "") -> BevelLimits: ...

from . import testing as testing
