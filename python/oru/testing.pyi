from typing import Any, Dict, List, NamedTuple

class Edge(NamedTuple):
    label: str
    value: Any

class Edges(NamedTuple):
    passing: List[Edge]
    failing: List[Edge]

def edges(info: Dict[str, Any]) -> Edges: ...
