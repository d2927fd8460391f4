from typing import Any, Dict, List, Literal, Optional, Sequence, Tuple, TypeVar, Union, overload

from _typeshed import ReadableBuffer, WriteableBuffer
import numpy

__all__ = [
    "ChannelStatistics", "Converter", "Format", "FrameLayout", "FrameStatistics", "RGBFilter", "automatic",
    "convert", "describe_frame", "find_format", "formats", "measure",
]

_Array = numpy.ndarray[Any, Any]
_Frame = Union[ReadableBuffer, _Array]
_Out = TypeVar("_Out", bound=Union[WriteableBuffer, _Array])
_Format = Union["Format", str, int]
_Pattern = Literal[
    "GRBG", "GBRG", "RGGB", "BGGR", "RGBG", "BGRG", "GRGB", "GBGR", "WGWR", "WBWG", "WRWG", "WGWB"
]
_Demosaic = Literal["fast", "interpolate", "directional"]
_Matrix = Literal["601", "709", "jpeg"]
_Packing = Literal["type", "gige-vision", "csi2"]
_Channels = Union[float, Tuple[float, float, float]]
_ColorMatrix = Sequence[Sequence[float]]
_Curve = Union[Literal["linear", "srgb", "gamma"], Sequence[Tuple[float, float]], _Array]
_Region = Tuple[int, int, int, int]

class Format:
    @property
    def id(self) -> int: ...
    @property
    def name(self) -> str: ...
    @property
    def family(self) -> str: ...
    @property
    def bits_per_pixel(self) -> int: ...
    @property
    def depth(self) -> int: ...
    @property
    def sample_bits(self) -> int: ...
    @property
    def planes(self) -> int: ...
    @property
    def width_multiple(self) -> int: ...
    @property
    def is_source(self) -> bool: ...
    @property
    def is_destination(self) -> bool: ...
    @property
    def takes_filter(self) -> bool: ...
    @property
    def layout(self) -> str: ...
    @property
    def destinations(self) -> List[Format]: ...

def formats() -> List[Format]: ...
def find_format(word: _Format) -> Format: ...

class FrameLayout:
    @property
    def bytes_per_line(self) -> int: ...
    @property
    def stride(self) -> int: ...
    @property
    def planes(self) -> int: ...
    @property
    def bytes_per_plane(self) -> int: ...
    @property
    def frame_bytes(self) -> int: ...
    @property
    def least_bytes(self) -> int: ...

def describe_frame(format: _Format, width: int, height: int, stride: int = 0) -> FrameLayout: ...

class RGBFilter:
    def __init__(
        self,
        *,
        gamma: float = 1.0,
        black: float = 0.0,
        balance: _Channels = 1.0,
        gain: _Channels = 1.0,
        offset: _Channels = 0.0,
    ) -> None: ...
    @staticmethod
    def multipliers(gain: _Channels = 1.0, offset: Tuple[int, int, int] = (0, 0, 0)) -> RGBFilter: ...
    @property
    def tables(self) -> _Array: ...

class Converter:
    def __init__(
        self,
        source: _Format,
        destination: _Format,
        width: int,
        height: int,
        *,
        pattern: Optional[_Pattern] = None,
        demosaic: Optional[_Demosaic] = None,
        matrix: Optional[_Matrix] = None,
        packing: Optional[_Packing] = None,
        black: Optional[_Channels] = None,
        white: Optional[float] = None,
        gain: Optional[_Channels] = None,
        color_matrix: Optional[_ColorMatrix] = None,
        curve: Optional[_Curve] = None,
        gamma: Optional[float] = None,
        filter: Optional[RGBFilter] = None,
        full_depth: bool = False,
        flip_vertical: bool = False,
        flip_horizontal: bool = False,
        region: Optional[_Region] = None,
        threads: int = 1,
    ) -> None: ...
    @overload
    def convert(self, frame: _Frame, out: None = None, stride: int = 0) -> _Array: ...
    @overload
    def convert(self, frame: _Frame, out: _Out, stride: int = 0) -> _Out: ...
    @overload
    def __call__(self, frame: _Frame, out: None = None, stride: int = 0) -> _Array: ...
    @overload
    def __call__(self, frame: _Frame, out: _Out, stride: int = 0) -> _Out: ...
    @property
    def source(self) -> Format: ...
    @property
    def destination(self) -> Format: ...
    @property
    def shape(self) -> Tuple[int, ...]: ...
    @property
    def dtype(self) -> numpy.dtype[Any]: ...
    @property
    def pattern(self) -> Optional[str]: ...
    @property
    def threads(self) -> int: ...
    @property
    def source_layout(self) -> FrameLayout: ...
    @property
    def destination_layout(self) -> FrameLayout: ...

class ChannelStatistics:
    @property
    def count(self) -> int: ...
    @property
    def minimum(self) -> int: ...
    @property
    def maximum(self) -> int: ...
    @property
    def mean(self) -> float: ...
    @property
    def histogram(self) -> _Array: ...

class FrameStatistics:
    @property
    def depth(self) -> int: ...
    @property
    def channels(self) -> List[ChannelStatistics]: ...
    @property
    def saturated_share(self) -> float: ...
    def levels(self, black_share: float = 0.001, white_share: float = 0.999) -> Tuple[float, float]: ...
    def grey_world_gains(self, black: float = 0.0) -> Tuple[float, float, float]: ...

def measure(
    frame: _Frame,
    format: _Format,
    width: int,
    height: int,
    stride: int = 0,
    line_step: int = 1,
    *,
    pattern: Optional[_Pattern] = None,
    matrix: Optional[_Matrix] = None,
    packing: Optional[_Packing] = None,
    region: Optional[_Region] = None,
) -> FrameStatistics: ...
def automatic(statistics: FrameStatistics) -> Dict[str, Any]: ...
@overload
def convert(
    frame: _Frame,
    source: _Format,
    destination: _Format,
    width: Optional[int] = None,
    height: Optional[int] = None,
    *,
    out: None = None,
    stride: int = 0,
    pattern: Optional[_Pattern] = None,
    demosaic: Optional[_Demosaic] = None,
    matrix: Optional[_Matrix] = None,
    packing: Optional[_Packing] = None,
    black: Optional[_Channels] = None,
    white: Optional[float] = None,
    gain: Optional[_Channels] = None,
    color_matrix: Optional[_ColorMatrix] = None,
    curve: Optional[_Curve] = None,
    gamma: Optional[float] = None,
    filter: Optional[RGBFilter] = None,
    full_depth: bool = False,
    flip_vertical: bool = False,
    flip_horizontal: bool = False,
    region: Optional[_Region] = None,
    threads: int = 1,
) -> _Array: ...
@overload
def convert(
    frame: _Frame,
    source: _Format,
    destination: _Format,
    width: Optional[int] = None,
    height: Optional[int] = None,
    *,
    out: _Out,
    stride: int = 0,
    pattern: Optional[_Pattern] = None,
    demosaic: Optional[_Demosaic] = None,
    matrix: Optional[_Matrix] = None,
    packing: Optional[_Packing] = None,
    black: Optional[_Channels] = None,
    white: Optional[float] = None,
    gain: Optional[_Channels] = None,
    color_matrix: Optional[_ColorMatrix] = None,
    curve: Optional[_Curve] = None,
    gamma: Optional[float] = None,
    filter: Optional[RGBFilter] = None,
    full_depth: bool = False,
    flip_vertical: bool = False,
    flip_horizontal: bool = False,
    region: Optional[_Region] = None,
    threads: int = 1,
) -> _Out: ...
