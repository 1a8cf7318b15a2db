"""The primitives behind the database, for direct use: header and record
checks, the checksum, the path rule, interpolation and adjustments."""

from ._sparlane import _testing

validate_header = _testing.validate_header
calculate_crc32 = _testing.calculate_crc32
sanitize_path = _testing.sanitize_path
interpolate_linear = _testing.interpolate_linear
perform_interpolation = _testing.perform_interpolation
extrapolate_conservative = _testing.extrapolate_conservative
adjust_for_torch_angle = _testing.adjust_for_torch_angle
validate_parameter = _testing.validate_parameter
is_statistical_outlier = _testing.is_statistical_outlier

__all__ = [
    "validate_header",
    "calculate_crc32",
    "sanitize_path",
    "interpolate_linear",
    "perform_interpolation",
    "extrapolate_conservative",
    "adjust_for_torch_angle",
    "validate_parameter",
    "is_statistical_outlier",
]
