"""Plasma-cutting parameters: with which settings do I cut this material,
this thick, on this machine?

    import sparlane

    with sparlane.Database() as db:
        db.load("sample.slb")
        r = db.interpolate("Mild steel", 8.0, "AIR-45A")
        print(r.parameter.cut_speed_mm_min, r.confidence)

A failed operation raises :class:`Error` (with ``.code``, an
:class:`ErrorCode`); queries return ``None`` or empty lists.  Records are
:class:`CuttingParameter` objects with the field names of the C++ library.
Floats are stored in single precision and read back as the shortest decimal
that stores the same value.  Paths may be ``str``, ``bytes`` or
``os.PathLike``; names ``str`` or ``bytes``.
"""

from . import _sparlane
from ._error import Error
from ._sparlane import (
    FLAG_ANGLE_ADJUSTED,
    FLAG_DERIVED,
    FLAG_SPEED_CAPPED,
    BevelLimits,
    CommonLineRules,
    Compression,
    ConsumableLife,
    ConsumableSet,
    ConsumableUsage,
    CornerSlowdown,
    CuttingParameter,
    CutEstimate,
    Database,
    DatabaseStats,
    EdgeQualityProfile,
    ErrorCode,
    FileHeader,
    HeatAffectedZone,
    InterpolationResult,
    JobCost,
    KerfCompensation,
    LeadInOut,
    MaterialPricing,
    PartSpacing,
    PerformanceMetrics,
    QualityLevel,
    SmallHoleParams,
    SupportedThicknessRange,
    bevel_limits,
    calculate_corner_slowdown,
    calculate_effective_thickness,
    calculate_haz,
    calculate_kerf_compensation,
    calculate_lead_in_out,
    calculate_part_spacing,
    common_line_rules,
    estimate_consumable_life,
    estimate_cut_time,
    estimate_job_cost,
    quality_profile,
    small_hole_params,
)
from . import testing

__version__ = _sparlane.__version__

__all__ = [
    "FLAG_ANGLE_ADJUSTED",
    "FLAG_DERIVED",
    "FLAG_SPEED_CAPPED",
    "BevelLimits",
    "CommonLineRules",
    "Compression",
    "ConsumableLife",
    "ConsumableSet",
    "ConsumableUsage",
    "CornerSlowdown",
    "CuttingParameter",
    "CutEstimate",
    "Database",
    "DatabaseStats",
    "EdgeQualityProfile",
    "Error",
    "ErrorCode",
    "FileHeader",
    "HeatAffectedZone",
    "InterpolationResult",
    "JobCost",
    "KerfCompensation",
    "LeadInOut",
    "MaterialPricing",
    "PartSpacing",
    "PerformanceMetrics",
    "QualityLevel",
    "SmallHoleParams",
    "SupportedThicknessRange",
    "bevel_limits",
    "calculate_corner_slowdown",
    "calculate_effective_thickness",
    "calculate_haz",
    "calculate_kerf_compensation",
    "calculate_lead_in_out",
    "calculate_part_spacing",
    "common_line_rules",
    "estimate_consumable_life",
    "estimate_cut_time",
    "estimate_job_cost",
    "quality_profile",
    "small_hole_params",
    "testing",
]
