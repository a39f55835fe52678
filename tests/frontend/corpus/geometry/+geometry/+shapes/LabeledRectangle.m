classdef LabeledRectangle < geometry.shapes.Rectangle
    % LABELEDRECTANGLE A rectangle with a text label and a list of tags.
    %   obj(end) is the last tag: the class overloads END for its indices.

    properties
        Label (1,1) string = ""
        Tags (1,:) string = string.empty
    end

    methods
        function obj = LabeledRectangle(label, varargin)
            obj@geometry.shapes.Rectangle(varargin{:});
            obj.Label = label;
        end

        function p = perimeter(obj)
            % The frame around the label counts too.
            p = obj.perimeter@geometry.shapes.Rectangle() + 2*strlength(obj.Label);
        end

        function xy = outline(obj, varargin)
            xy = obj.outline@geometry.shapes.Rectangle(varargin{:});
            xy(end+1, :) = xy(1, :);
        end

        function e = end(obj, k, n)
            if n == 1
                e = numel(obj.Tags);
            else
                e = size(obj.Tags, k);
            end
        end

        function t = lastTags(obj, count)
            t = obj.Tags(max(1, end - count + 1):end);
        end
    end
end
